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
#include "seluvorne/legacy.h"
#include "seluvorne/dao.h"
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
  module.def(
      "migrate_floor",
      [](const std::string& folder, bool salvage) {
        auto report = WithoutGil([&] { return seluvorne::legacy::MigrateFloor(folder, salvage); });
        py::list files;
        for (const auto& file : report.files) {
          py::list tables;
          for (const auto& table : file.tables)
            tables.append(py::dict(py::arg("table") = table.table,
                                   py::arg("recorded") = table.recorded,
                                   py::arg("read") = table.read,
                                   py::arg("written") = table.written));
          files.append(py::dict(py::arg("file") = file.file, py::arg("migrated") = file.migrated,
                                py::arg("tables") = tables));
        }
        py::object report_file = py::none();
        if (!report.report_file.empty()) report_file = py::str(report.report_file);
        return py::dict(py::arg("folder") = report.folder, py::arg("salvage") = report.salvage,
                        py::arg("files") = files, py::arg("report_file") = report_file);
      },
      py::arg("folder"), py::arg("salvage") = false,
      "Migrates a floor folder's legacy (Jet) files to the native format, every row\n"
      "checked; the originals stay beside as '<file>.jet'. Returns the report: per file\n"
      "and table the rows recorded, read and written. A failure leaves the folder as it\n"
      "was. salvage=True migrates what a damaged file still gives, losses reported.");
  module.attr("FLOOR_COMPANION") = std::string(seluvorne::kFloorCompanionProgId);

  // seluvorne.dao: the database engine's constants under DAO's names.
  py::module_ dao = module.def_submodule(
      "dao",
      "The database engine's constants under DAO's names: field types, record set\n"
      "types, Execute options and the locale of the suite's files.");
  dao.attr("dbInteger") = seluvorne::dao::dbInteger;
  dao.attr("dbText") = seluvorne::dao::dbText;
  dao.attr("dbFailOnError") = seluvorne::dao::dbFailOnError;
  dao.attr("dbOpenTable") = seluvorne::dao::dbOpenTable;
  dao.attr("dbOpenDynaset") = seluvorne::dao::dbOpenDynaset;
  dao.attr("dbOpenSnapshot") = seluvorne::dao::dbOpenSnapshot;
  dao.attr("dbLangJapanese") = std::string(seluvorne::dao::dbLangJapanese);

  // The names are the package's: seluvorne.Dispatch, not seluvorne._seluvorne.Dispatch.
  for (const char* name : {"Ref", "Array", "Dispatch", "Member", "register", "unregister",
                           "CreateObject", "DBEngine", "restart", "register_standalone", "migrate_floor"})
    module.attr(name).attr("__module__") = "seluvorne";

  seluvorne::StartLibrary();
}
