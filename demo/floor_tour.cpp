// The main job so far, as a client of the suite does it: the library's classes
// created by name and called by name. A floor is created and opened, a
// build-out is written, a page's build-outs, switches and through-bar value
// are copied to another floor, and the deliberate statement of the emptying
// member shows the engine's verdict.

#include <cstdio>

#include "seluvorne/call_by_name.h"
#include "seluvorne/components.h"
#include "seluvorne/frame.h"

namespace {

using seluvorne::CallByName;
using seluvorne::CallKind;
using seluvorne::Object;

vb::Variant Get(const Object& object, std::string_view member) {
  return CallByName(object, member, CallKind::PropertyGet);
}
template <class V>
void Put(const Object& object, std::string_view member, const V& value) {
  CallByName(object, member, CallKind::PropertyPut, value);
}
template <class... A>
vb::Variant Call(const Object& object, std::string_view member, const A&... args) {
  return CallByName(object, member, CallKind::Method, args...);
}

}  // namespace

void FloorTour() {
  std::printf("\n-- a floor, through the library's classes by name\n");
  Object floors = seluvorne::CreateObject("FolderKit.clsFloorDirs");
  const std::string floor3 = vb::CStr(Call(floors, "GetFullPathToKai", 1, 2, 3));
  const std::string floor4 = vb::CStr(Call(floors, "GetFullPathToKai", 1, 2, 4));

  Object service = seluvorne::CreateObject("SeluVorneDS.clsSeluVorneDataService");
  Put(service, "CurrKai", floor3);  // creates the folder and SELUVORN.mdb, then opens it
  Object tables = vb::CObj(Get(vb::CObj(Get(service, "KutaiDb")), "TableDefs"));
  std::printf("%s holds:", vb::CStr(Call(service, "GetFileName", floor3)).c_str());
  for (std::int16_t i = 0; i < vb::CInt(Get(tables, "Count")); ++i)
    std::printf(" %s", vb::CStr(Get(vb::CObj(Call(tables, "Item", i)), "Name")).c_str());
  std::printf("\nPageMax = %d\n", vb::CInt(Get(service, "PageMax")));
  Call(service, "CloseDB");
  Put(service, "CurrKai", floor4);  // the destination floor
  Call(service, "CloseDB");

  Object fukasi = seluvorne::CreateObject("SeluVorneDS.clsHariFukasiDS");
  Call(fukasi, "WriteDB_Open", floor3);
  Put(fukasi, "Page", 0);
  Put(fukasi, "Span", 1);
  Put(fukasi, "Iti", vb::CInt(Get(fukasi, "ItiNoUe")));
  Put(fukasi, "Syurui", 0);
  Put(fukasi, "Kigou", "F1");
  std::printf("build-out symbol on page 0, span 1, %s: \"%s\"; isYuukou = %s\n",
              vb::CStr(Call(fukasi, "ItiName", 2)).c_str(), vb::CStr(Get(fukasi, "Kigou")).c_str(),
              vb::CBool(Call(fukasi, "isYuukou")) ? "True" : "False");
  Call(fukasi, "CloseDB");

  // Page 0 of floor 3 to page 7 of floor 4: build-outs, switches, through-bar value.
  std::printf("copy build-outs: %s\n",
              vb::CBool(Call(fukasi, "No_Copy1Page", 1, 2, 3, 0, 1, 2, 4, 7)) ? "True" : "False");
  Object switches = seluvorne::CreateObject("SeluVorneDS.clsHariSWDS");
  std::printf("copy switches:   %s\n",
              vb::CBool(Call(switches, "No_Copy1Page", 1, 2, 3, 0, 1, 2, 4, 7)) ? "True" : "False");
  Object bars = seluvorne::CreateObject("ThroughBarStore.clsThroughBars");
  bool on = true;
  Call(bars, "SetPathPutHikiToosiSW", floor3 + "\\Hollenbar.Dat", 0, seluvorne::Ref(on));
  Object through = seluvorne::CreateObject("SeluVorneDS.clsHikiCopyDS");
  Call(through, "No_Copy1Page", 1, 2, 3, 0, 1, 2, 4, 7);  // answers False by design
  std::printf(
      "through-bar value of floor 4, page 7: %s\n",
      vb::CBool(Call(bars, "SetPathGetHikiToosiSW", floor4 + "\\Hollenbar.Dat", 7)) ? "on" : "off");
  Put(fukasi, "Path", floor4);
  Put(fukasi, "Page", 7);
  std::printf("floor 4, page 7 has build-outs: %s\n",
              vb::CBool(Call(fukasi, "isYuukou")) ? "True" : "False");
  Call(fukasi, "CloseDB");

  try {
    Call(service, "DeleteAllDataDB", floor3);
  } catch (const seluvorne::Error& error) {
    std::printf(
        "DeleteAllDataDB: error %d, %s (its statement is \"DELETE FORM ...\"; no row "
        "is deleted)\n",
        error.number, error.description.c_str());
  }
}
