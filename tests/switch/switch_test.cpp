// The switch store: a page copy and the end-joint lengths' limit, on real
// files in a scratch data root with recording fakes for the outside
// components.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "error_matchers.h"
#include "floor_test.h"
#include "seluvorne/collaborators.h"
#include "seluvorne/hari_sw_ds.h"
#include "seluvorne/hiki_copy_ds.h"
#include "seluvorne/page_rows.h"

namespace {

using namespace seluvorne;
using seluvorne::testing::FloorTest;
using ::testing::ElementsAre;
using vb::Variant;

// Every row of a table, in the order the engine keeps them, one text each.
std::vector<std::string> Rows(dao::Database& db, const std::string& table) {
  std::vector<std::string> rows;
  for (auto set = db.OpenRecordset("SELECT * FROM " + table + ";", dao::dbOpenSnapshot);
       !set->IsEOF(); set->MoveNext()) {
    std::string row;
    for (std::int32_t i = 0; i < set->Fields()->Count(); ++i)
      row += (i ? " " : "") + vb::CStr(set->Fields()->Item(i)->Value());
    rows.push_back(row);
  }
  return rows;
}

// ---- The switch store ------------------------------------------------------------

class SwitchStoreTest : public FloorTest {
 protected:
  std::string SwitchFile(const std::string& folder) const {
    return folder + "\\" + std::string(clsHariSWDS::kFileName);
  }
  // A switch file in the folder with the rows given as (page, span, kind, data).
  void WriteSwitchFile(const std::string& folder,
                       std::initializer_list<std::tuple<int, int, int, const char*>> rows) {
    static constexpr std::string_view kFields[] = {"PAGE", "SPAN", "DATAKIND", "DATA"};
    maker_.Create_SwMDB_TBL(SwitchFile(folder));
    frame::RowAppender add(*dao::DBEngine::Instance()->OpenDatabase(SwitchFile(folder)),
                           "SELUVORNESW", kFields);
    for (const auto& [page, span, kind, data] : rows)
      add.Add(std::vector<Variant>{page, span, kind, data});
  }
  std::vector<std::string> SwitchRows(const std::string& folder) {
    return Rows(*dao::DBEngine::Instance()->OpenDatabase(SwitchFile(folder)), "SELUVORNESW");
  }
  std::shared_ptr<dao::Database> NewDatabase() {
    return dao::DBEngine::Instance()->CreateDatabase((root / "old.mdb").string(),
                                                     std::string(dao::dbLangJapanese));
  }

 private:
  clsHariSWDS maker_;  // lives as long as the test, so no death replaces the services midway
};

TEST_F(SwitchStoreTest, CopyReplacesTheDestinationPageWithTheSourceRowsThatHaveData) {
  const std::string from = MakeFloorFolder(1, 2, 3);
  const std::string to = MakeFloorFolder(1, 2, 4);
  WriteSwitchFile(from, {{2, 0, 1, "on"}, {2, 1, 1, ""}, {3, 0, 1, "other page"}, {2, 4, 7, "x"}});
  WriteSwitchFile(to, {{5, 9, 9, "old"}, {6, 0, 0, "old"}, {7, 0, 0, "kept"}, {5, 8, 8, "old"}});

  clsHariSWDS store;
  EXPECT_TRUE(store.No_Copy1Page(1, 2, 3, 2, 1, 2, 4, 5));
  EXPECT_THAT(SwitchRows(to), ElementsAre("6 0 0 old", "7 0 0 kept", "5 0 1 on", "5 4 7 x"));
  EXPECT_THAT(SwitchRows(from), ElementsAre("2 0 1 on", "2 1 1 ", "3 0 1 other page", "2 4 7 x"));
  EXPECT_EQ(store.pPageNo, 5);
  EXPECT_RAISES(store.CloseDB(), errc::kObjectNotSet);  // nothing left open

  // A page without rows, in a file or in one not there yet (then created,
  // empty), empties the destination page.
  EXPECT_TRUE(store.No_Copy1Page(1, 2, 3, 9, 1, 2, 4, 6));
  const std::string empty = MakeFloorFolder(1, 2, 5);
  EXPECT_TRUE(store.No_Copy1Page(1, 2, 5, 2, 1, 2, 4, 5));
  EXPECT_THAT(SwitchRows(to), ElementsAre("7 0 0 kept"));
  EXPECT_THAT(SwitchRows(empty), ::testing::IsEmpty());
}

// ---- The tables older floor files lack --------------------------------------------

TEST_F(SwitchStoreTest, EndJointLengthsRefuseMoreThanTenCharactersAndKeepEarlierRows) {
  auto db = NewDatabase();
  clsHariSWDS store;
  Variant handle(db);
  store.CreateTanbuJointLTbl(handle);
  auto set = db->OpenRecordset("SPANTANJOIL");
  for (const char* data : {"1234567890", "長さ１２３４５６７８"}) {
    set->AddNew();
    set->SetValue("DATA", data);
    set->Update();
  }
  set->AddNew();
  set->SetValue("DATA", "12345678901");
  EXPECT_RAISES(set->Update(), errc::kFieldTooSmall);
  EXPECT_THAT(Rows(*db, "SPANTANJOIL"),
              ElementsAre("-1 -1 -1 -1 1234567890", "-1 -1 -1 -1 長さ１２３４５６７８"));
}

}  // namespace
