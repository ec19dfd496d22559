// A C++ host that links libseluvorne and embeds Python for its scripting
// console. It registers a component of its own and sets an engine-wide
// setting; the console's `seluvorne` module must see both, which it can only
// when the process holds one copy of the library (one registry, one engine).

#include <pybind11/embed.h>

#include <cstdio>

#include "seluvorne/dao.h"
#include "seluvorne/member_table.h"

namespace {

using namespace seluvorne;

class HostConsole : public DispatchImpl<HostConsole> {
 public:
  static const MemberTable<HostConsole>& Members() {
    static const auto table =
        MemberTable<HostConsole>("HostConsole").get("Greeting", &HostConsole::Greeting);
    return table;
  }
  std::string Greeting() const { return "from the host"; }
};

}  // namespace

int main() {
  Register("Host.Console", [] { return Object(std::make_shared<HostConsole>()); });
  dao::DBEngine::Instance()->SetBusyTimeout(1234);

  pybind11::scoped_interpreter python;
  pybind11::dict scope;
  pybind11::exec(R"(
import seluvorne
greeting = seluvorne.CreateObject("Host.Console").Greeting
timeout = seluvorne.DBEngine().BusyTimeout
)",
                 scope);
  const auto greeting = scope["greeting"].cast<std::string>();
  const auto timeout = scope["timeout"].cast<int>();
  std::printf("%s, busy timeout %d\n", greeting.c_str(), timeout);
  return greeting == "from the host" && timeout == 1234 ? 0 : 1;
}
