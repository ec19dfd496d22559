// The `seluvorne` extension module: the library's late-bound surface for
// Python scripts and tests. seluvorne/__init__.py presents these names as the
// package's own.

#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <optional>
#include <string>

#include "array.h"
#include "component.h"
#include "errors.h"
#include "proxy.h"
#include "seluvorne/components.h"
#include "seluvorne/library.h"
#include "values.h"

namespace py = pybind11;

namespace seluvorne::python {
namespace {

// Calls into the library with the GIL released, as every call from Python does.
template <class F>
auto WithoutGil(F&& function) {
  py::gil_scoped_release release;
  return function();
}

}  // namespace
}  // namespace seluvorne::python

PYBIND11_MODULE(_seluvorne, module) {
  using namespace seluvorne::python;
  module.doc() =
      "SeluVorneDS from Python: create the library's components and the suite's by\n"
      "name, call their members by name, and write components in Python.";

  BindErrors(module);
  BindRef(module);
  BindArray(module);
  BindDispatch(module);
  BindRegistry(module);

  module.def(
      "CreateObject",
      [](const std::string& prog_id) {
        return HeldByPython(WithoutGil([&] { return seluvorne::CreateObject(prog_id); }));
      },
      py::arg("prog_id"), "Creates the component registered as prog_id; error 429 when none is.");
  module.def(
      "DBEngine", [] { return HeldByPython(WithoutGil([] { return seluvorne::DBEngine(); })); },
      "The database engine the whole process shares, for inspecting files.");
  module.def(
      "restart", [] { WithoutGil([] { seluvorne::RestartLibrary(); }); },
      "Runs the library's start routine again: fresh library-wide globals.");

  module.def(
      "register_standalone",
      [](const std::optional<std::string>& data_root) {
        WithoutGil([&] { seluvorne::RegisterStandaloneComponents(data_root.value_or("")); });
      },
      py::arg("data_root") = py::none(),
      "Registers the library's plain stand-ins for the suite's outside components, for\n"
      "scripts without the suite. data_root: where the floors are; None takes\n"
      "SELUVORNE_DATA, else dataRoot of the settings file.");
  module.attr("FLOOR_COMPANION") = std::string(seluvorne::kFloorCompanionProgId);

  // The names are the package's: seluvorne.Dispatch, not seluvorne._seluvorne.Dispatch.
  for (const char* name : {"Ref", "Array", "Dispatch", "Member", "register", "unregister",
                           "CreateObject", "DBEngine", "restart", "register_standalone"})
    module.attr(name).attr("__module__") = "seluvorne";

  seluvorne::StartLibrary();
}
