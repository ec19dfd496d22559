// A floor folder with a data service writing to it, and the rows of a page
// read back in key order, for the suites of the page writers, buffers and copy.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "floor_test.h"
#include "seluvorne/runtime.h"
#include "seluvorne/seluvorne_data_service.h"

namespace seluvorne::testing {

// The ten tables of a page besides TOORIMEI.
inline const std::vector<std::string> kPageTables = {
    "ANKANIGE",           "HANTI",     "HENKATEN",       "KUTAIDATA", "RSITEI",
    "SITAKINANKASETUDAN", "STPGENSUN", "STPJOUGEGENSUN", "SPANTOP",   "SPANTANJOIL"};

// The rows of `page` in `table`, as "SUBPAGE,BANGOU[,BAN]=DATA" in key
// order (TOORIMEI: "TOORI|KASYO").
inline std::vector<std::string> RowsOf(dao::Database& db, const std::string& table,
                                       std::int16_t page) {
  const bool names = table == "TOORIMEI";
  const bool ban =
      table == "ANKANIGE" || table == "HENKATEN" || table == "SPANTOP" || table == "SPANTANJOIL";
  auto set = db.OpenRecordset(
      "SELECT * FROM " + table + " WHERE PAGE = " + vb::StrTrimmed(page) +
          (names ? std::string(";")
                 : " ORDER BY SUBPAGE, BANGOU" + std::string(ban ? ", BAN;" : ";")),
      dao::dbOpenSnapshot);
  std::vector<std::string> rows;
  for (; !set->IsEOF(); set->MoveNext()) {
    if (names) {
      rows.push_back(vb::CStr(set->Value("TOORI")) + "|" + vb::CStr(set->Value("KASYO")));
      continue;
    }
    std::string key = vb::StrTrimmed(vb::CInt(set->Value("SUBPAGE"))) + "," +
                      vb::StrTrimmed(vb::CInt(set->Value("BANGOU")));
    if (ban) key += "," + vb::StrTrimmed(vb::CInt(set->Value("BAN")));
    rows.push_back(key + "=" + vb::CStr(set->Value("DATA")));
  }
  set->Close();
  return rows;
}

class PageTest : public FloorTest {
 protected:
  // Floor 1-2-3 opened for writing; the log starts empty.
  void SetUp() override {
    FloorTest::SetUp();
    folder = MakeFloorFolder(1, 2, 3);
    service = std::make_shared<clsSeluVorneDataService>();
    service->WriteOpen(folder);
    fakes.ClearLog();
  }

  std::vector<std::string> Rows(const std::string& table, std::int16_t page) {
    return RowsOf(*service->WriteOpenDb, table, page);
  }

  std::string folder;
  std::shared_ptr<clsSeluVorneDataService> service;
};

}  // namespace seluvorne::testing
