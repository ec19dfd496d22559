// clsHikiCopyDS: the through-bar value of one page, copied between floors.

#include "seluvorne/frame.h"
#include "seluvorne/hiki_copy_ds.h"

namespace seluvorne {

const MemberTable<clsHikiCopyDS>& clsHikiCopyDS::Members() {
  static const auto table = MemberTable<clsHikiCopyDS>("clsHikiCopyDS")
                                .method("No_Copy1Page", &clsHikiCopyDS::No_Copy1Page);
  return table;
}

clsHikiCopyDS::clsHikiCopyDS() = default;

clsHikiCopyDS::~clsHikiCopyDS() {
  frame::ReplaceSharedCollaborators();
}

bool clsHikiCopyDS::No_Copy1Page(std::int16_t iMotoZeneNo, std::int16_t iMotoKoujiNo,
                                 std::int16_t iMotoKaiNo, std::int16_t iMotoPageNo,
                                 std::int16_t iSakiZeneNo, std::int16_t iSakiKoujiNo,
                                 std::int16_t iSakiKaiNo, std::int16_t iSakiPageNo) {
  const frame::ThroughBars bars = frame::ThroughBars::Create();
  const std::string from =
      frame::gFloorDirs.GetFullPathToKai(iMotoZeneNo, iMotoKoujiNo, iMotoKaiNo);
  const std::string to = frame::gFloorDirs.GetFullPathToKai(iSakiZeneNo, iSakiKoujiNo, iSakiKaiNo);

  const std::string from_file = from + "\\" + std::string(kFileName);
  bool value = bars.SetPathGetHikiToosiSW(from_file, iMotoPageNo);

  const std::string to_file = to + "\\" + std::string(kFileName);
  bars.SetPathGetHikiToosiSW(to_file, iMotoPageNo);  // discarded: see the header
  bars.SetPathPutHikiToosiSW(to_file, iSakiPageNo, value);
  return false;
}

}  // namespace seluvorne
