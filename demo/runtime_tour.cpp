// A short tour of the runtime and late binding: a component is registered,
// created by name and called by name, with by-reference arguments and the
// runtime's conversions and errors; then the standalone components
// (standalone_tour.cpp) and the library's classes on a floor (floor_tour.cpp).
// Replaced by the command-line tool later.

#include <cstdio>

#include "seluvorne/call_by_name.h"
#include "seluvorne/member_table.h"

namespace {

using seluvorne::CallKind;
using seluvorne::MemberTable;

// A toy floor-path service: turns contractor, project and floor numbers into
// a folder, as the suite's own floor-path component does.
class TourFloors : public seluvorne::DispatchImpl<TourFloors> {
 public:
  static const MemberTable<TourFloors>& Members() {
    static const auto table = MemberTable<TourFloors>("TourFloors")
                                  .method("GetFullPathToKai", &TourFloors::GetFullPathToKai)
                                  .method("NextFloor", &TourFloors::NextFloor)
                                  .field("DataPath", &TourFloors::DataPath);
    return table;
  }

  std::string DataPath = "C:\\Data";

  std::string GetFullPathToKai(std::int16_t& zene, std::int16_t& kouji, std::int16_t& kai) {
    return DataPath + "\\Zene" + vb::StrTrimmed(zene) + "\\Kouji" + vb::StrTrimmed(kouji) + "\\" +
           vb::StrTrimmed(kai) + "kai";
  }
  void NextFloor(std::int16_t& kai) { kai = vb::Add<std::int16_t>(kai, 1); }
};

}  // namespace

void StandaloneTour();
void FloorTour();

int main() {
  seluvorne::Register("Tour.Floors", [] { return std::make_shared<TourFloors>(); });
  seluvorne::Object floors = seluvorne::CreateObject("tour.floors");
  std::printf("created %s by name\n", std::string(floors->className()).c_str());

  std::int16_t zene = 1, kouji = 2, kai = 3;
  auto folder =
      seluvorne::CallByName(floors, "GetFullPathToKai", CallKind::Method, seluvorne::Ref(zene),
                            seluvorne::Ref(kouji), seluvorne::Ref(kai));
  std::printf("GetFullPathToKai(1, 2, 3) = %s\n", vb::CStr(folder).c_str());

  seluvorne::CallByName(floors, "NextFloor", CallKind::Method, seluvorne::Ref(kai));
  std::printf("NextFloor(kai) by reference: kai = %d\n", kai);

  std::printf(
      "Val(\"7abc\") = %g, CInt(2.5) = %d, Format(5, \"000\") = %s, Len(\"X1通り\") = %d, "
      "width = %d\n",
      vb::Val("7abc"), vb::CInt(2.5), vb::Format(5, "000").c_str(), vb::Len("X1通り"),
      vb::TextWidth("X1通り"));

  for (const char* member : {"NoSuchMember"}) {
    try {
      seluvorne::CallByName(floors, member, CallKind::Method);
    } catch (const seluvorne::Error& error) {
      std::printf("%s: error %d, %s\n", member, error.number, error.description.c_str());
    }
  }
  try {
    kai = 32767;
    seluvorne::CallByName(floors, "NextFloor", CallKind::Method, seluvorne::Ref(kai));
  } catch (const seluvorne::Error& error) {
    std::printf("NextFloor(32767): error %d, %s\n", error.number, error.description.c_str());
  }
  StandaloneTour();
  FloorTour();
  return 0;
}
