// Late binding: the one interface through which members are called by name,
// and the process-wide registry through which components are created by name.
//
// Clients of the library, the library's own classes and the outside
// components they call all meet here: a component is a Dispatch, created from
// its programmatic identifier ("SeluVorneDS.clsHariSWDS") and called with a
// member name, a call kind and Variant arguments. An argument passed by
// reference is a Variant the callee may change.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "seluvorne/variant.h"

namespace seluvorne {

enum class CallKind {
  Method,       // obj.Member args   (a method, or a property read: the runtime allows both)
  PropertyGet,  // x = obj.Member(args)
  PropertyPut,  // obj.Member(args) = value; the value is the last argument
};

// What a member name stands for on an object, for hosts that must tell a
// property from a method before calling (the Python binding).
struct MemberKinds {
  bool method = false;
  bool get = false;
  bool put = false;
  int get_arguments = 0;     // arguments the property read takes (indexed properties > 0)
  int method_arguments = 0;  // arguments the method takes at most
  int put_arguments = 0;     // arguments the property write takes, the value included
};

class Dispatch : public std::enable_shared_from_this<Dispatch> {
 public:
  virtual ~Dispatch() = default;

  // Calls `member` (matched without regard to letter case). Raises 438 for a
  // member the object does not have, 450 for a wrong argument count.
  virtual vb::Variant invoke(std::string_view member, CallKind kind,
                             std::span<vb::Variant> args) = 0;

  // What `member` is; nullopt when the object has no such member or cannot
  // tell (a component that resolves names only when called).
  virtual std::optional<MemberKinds> describe(std::string_view member) const {
    (void)member;
    return std::nullopt;
  }

  // The names of the members, as the class declares them, for listings
  // (dir() in Python); empty when the object cannot tell.
  virtual std::vector<std::string> memberNames() const { return {}; }

  // The member the runtime calls when the object itself is used as a value
  // or called ("Item" of a collection, "Value" of a field); empty for none.
  virtual std::string_view defaultMember() const { return {}; }

  // A name for messages and for the Python representation.
  virtual std::string_view className() const { return "Object"; }
};

// ---- The registry ----------------------------------------------------------

using Factory = std::function<Object()>;

// Registers (or replaces) the component created under `prog_id`. Names are
// matched without regard to letter case.
void Register(std::string_view prog_id, Factory factory);
// Removes a registration; false when there was none.
bool Unregister(std::string_view prog_id);
bool IsRegistered(std::string_view prog_id);
// Creates the component registered as `prog_id`; 429 for an unknown name.
Object CreateObject(std::string_view prog_id);

// ---- Calling by name -------------------------------------------------------

// A by-reference argument for CallByName: the typed variable receives what
// the callee leaves in the argument.
template <class T>
struct ByRef {
  T& target;
};
template <class T>
ByRef<T> Ref(T& target) {
  return ByRef<T>{target};
}

// Calls `member` on `object`; 91 when `object` is Nothing. The typed,
// variadic form is CallByName (call_by_name.h).
vb::Variant Invoke(const Object& object, std::string_view member, CallKind kind,
                   std::span<vb::Variant> args);

}  // namespace seluvorne
