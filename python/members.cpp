#include "members.h"

namespace seluvorne::python {

namespace {

std::string Arguments(int count) {
  return count == 0 ? "" : "(" + std::to_string(count) + ")";
}

// "method(1), property get, put(1)": what the member is and how many
// arguments each kind takes (a put's value counts as one).
std::string Kinds(const MemberKinds& kinds) {
  std::string text;
  auto add = [&](std::string part) { text += (text.empty() ? "" : ", ") + part; };
  if (kinds.method) add("method" + Arguments(kinds.method_arguments));
  if (kinds.get) add("property get" + Arguments(kinds.get_arguments));
  if (kinds.put)
    add(std::string(kinds.get ? "put" : "property put") + Arguments(kinds.put_arguments));
  return text;
}

}  // namespace

std::vector<std::string> ProxyDir(const Dispatch& object) {
  std::vector<std::string> names = object.memberNames();
  for (const char* own : {"invoke", "get", "put"})
    names.emplace_back(own);
  return names;
}

std::string MemberHelp(const Dispatch& object, std::string_view member) {
  std::optional<MemberKinds> kinds = object.describe(member);
  if (!kinds) return std::string(member) + ": a member resolved when it is called";
  return std::string(member) + ": " + Kinds(*kinds);
}

std::string ProxyHelp(const Dispatch& object) {
  std::string text = std::string(object.className()) +
                     ", called by name: obj.Method(args), obj.Property, obj.Property = value;\n"
                     "obj.invoke(name, *args), obj.get(name, *args), obj.put(name, *args, value)\n"
                     "always work. (n) is the number of arguments a kind takes.\n";
  std::vector<std::string> names = object.memberNames();
  if (names.empty()) return text + "\nIts members are resolved when they are called.\n";
  if (!object.defaultMember().empty())
    text += "Calling the object itself calls " + std::string(object.defaultMember()) + ".\n";
  text += "\nMembers:\n";
  for (const std::string& name : names)
    text += "  " + MemberHelp(object, name) + "\n";
  return text;
}

}  // namespace seluvorne::python
