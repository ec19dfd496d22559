// A client of the installed library: the beam frame store of a new floor,
// created by name on the standalone components, in a temporary data root.
//
//   client [data root]     (default: a new folder under the temporary folder)

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "seluvorne/call_by_name.h"
#include "seluvorne/components.h"
#include "seluvorne/library.h"
#include "seluvorne/version.h"

using seluvorne::CallByName;
using seluvorne::CallKind;

int main(int argc, char** argv) {
  namespace fs = std::filesystem;
  const bool own_root = argc < 2;
  fs::path root = own_root ? fs::temp_directory_path() / "seluvorne-client" : fs::path(argv[1]);
  if (own_root) fs::remove_all(root);
  fs::create_directories(root);
  int status = 0;
  try {
    seluvorne::RegisterStandaloneComponents(root.string());
    seluvorne::StartLibrary();

    auto floors = seluvorne::CreateObject("FolderKit.clsFloorDirs");
    std::string floor = vb::CStr(CallByName(floors, "GetFullPathToKai", CallKind::Method, 1, 2, 3));

    auto service = seluvorne::CreateObject("SeluVorneDS.clsSeluVorneDataService");
    CallByName(service, "CurrKai", CallKind::PropertyPut, floor);  // creates and opens the floor
    auto db = vb::CObj(CallByName(service, "KutaiDb", CallKind::PropertyGet));
    auto tables = vb::CObj(CallByName(db, "TableDefs", CallKind::PropertyGet));
    std::printf("libseluvorne %s: %s holds %d tables\n", seluvorne::LibraryVersion(), floor.c_str(),
                vb::CInt(CallByName(tables, "Count", CallKind::PropertyGet)));
    CallByName(service, "CloseDB", CallKind::Method);
  } catch (const seluvorne::Error& error) {
    std::fprintf(stderr, "error %d: %s\n", error.number, error.description.c_str());
    status = 1;
  }
  if (own_root) fs::remove_all(root);
  return status;
}
