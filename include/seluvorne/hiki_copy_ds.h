// clsHikiCopyDS: carries a page's through-bar value from one floor to another.
//
// Each floor folder may hold a through-bar file, "Hollenbar.Dat", with one
// on/off value per page. The file belongs to the through-bar component
// (ThroughBarStore.clsThroughBars); this class only reads the source page's
// value through it and writes it to the destination page. It keeps nothing
// between calls.
//
// Created by name as "SeluVorneDS.clsHikiCopyDS" once StartLibrary has run.
#pragma once

#include <cstdint>
#include <string_view>

#include "seluvorne/member_table.h"

namespace seluvorne {

class clsHikiCopyDS : public DispatchImpl<clsHikiCopyDS> {
 public:
  static const MemberTable<clsHikiCopyDS>& Members();

  // The through-bar file's name in a floor folder.
  static constexpr std::string_view kFileName = "Hollenbar.Dat";

  clsHikiCopyDS();
  // Gives the library new shared floor-path and probe services.
  ~clsHikiCopyDS() override;

  // Writes the source page's value to the destination page. Before the write
  // it reads the destination file once more, at the source page number, and
  // discards the answer: the component is made to address the destination
  // file, as the suite's clients expect. Answers False always; the page copy
  // does not look at it.
  bool No_Copy1Page(std::int16_t iMotoZeneNo, std::int16_t iMotoKoujiNo, std::int16_t iMotoKaiNo,
                    std::int16_t iMotoPageNo, std::int16_t iSakiZeneNo, std::int16_t iSakiKoujiNo,
                    std::int16_t iSakiKaiNo, std::int16_t iSakiPageNo);
};

}  // namespace seluvorne
