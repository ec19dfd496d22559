// The switch store, the table checks for older floor files, and the
// through-bar copy: real files in a scratch data root, recording fakes for
// the outside components.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "error_matchers.h"
#include "floor_test.h"
#include "seluvorne/call_by_name.h"
#include "seluvorne/collaborators.h"
#include "seluvorne/hari_sw_ds.h"
#include "seluvorne/hiki_copy_ds.h"

namespace {

using namespace seluvorne;
using seluvorne::testing::FloorTest;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using vb::Variant;

std::shared_ptr<dao::Database> Open(const std::string& path) {
  return dao::DBEngine::Instance()->OpenDatabase(path);
}

// Every row of a table, in the order the engine keeps them, one text each.
std::vector<std::string> Rows(dao::Database& db, const std::string& table) {
  std::vector<std::string> rows;
  auto set = db.OpenRecordset("SELECT * FROM " + table + ";", dao::dbOpenSnapshot);
  const auto fields = set->Fields();
  while (!set->IsEOF()) {
    std::string row;
    for (std::int32_t i = 0; i < fields->Count(); ++i) {
      const Variant value = fields->Item(i)->Value();
      row += (i ? " " : "") + (value.isNull() ? std::string("Null") : vb::CStr(value));
    }
    rows.push_back(row);
    set->MoveNext();
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
    maker_.Create_SwMDB_TBL(SwitchFile(folder));
    auto db = Open(SwitchFile(folder));
    auto set = db->OpenRecordset("SELUVORNESW");
    for (const auto& [page, span, kind, data] : rows) {
      set->AddNew();
      set->SetValue("PAGE", page);
      set->SetValue("SPAN", span);
      set->SetValue("DATAKIND", kind);
      set->SetValue("DATA", data);
      set->Update();
    }
  }
  std::vector<std::string> SwitchRows(const std::string& folder) {
    return Rows(*Open(SwitchFile(folder)), "SELUVORNESW");
  }

 private:
  clsHariSWDS maker_;  // lives as long as the test, so no death replaces the services midway
};

TEST_F(SwitchStoreTest, CopyReplacesTheDestinationPageWithTheSourceRowsThatHaveData) {
  const std::string from = MakeFloorFolder(1, 2, 3);
  const std::string to = MakeFloorFolder(1, 2, 4);
  WriteSwitchFile(from, {{2, 0, 1, "on"}, {2, 1, 1, ""}, {3, 0, 1, "other page"}, {2, 4, 7, "x"}});
  WriteSwitchFile(to, {{5, 9, 9, "old"}, {6, 0, 0, "kept"}, {5, 8, 8, "old too"}});

  clsHariSWDS store;
  EXPECT_TRUE(store.No_Copy1Page(1, 2, 3, 2, 1, 2, 4, 5));

  EXPECT_THAT(SwitchRows(to), ElementsAre("6 0 0 kept", "5 0 1 on", "5 4 7 x"));
  EXPECT_THAT(SwitchRows(from), ElementsAre("2 0 1 on", "2 1 1 ", "3 0 1 other page", "2 4 7 x"));
  EXPECT_EQ(store.pPageNo, 5);
  EXPECT_RAISES(store.CloseDB(), errc::kObjectNotSet);  // nothing left open
  EXPECT_THAT(fakes.Log(),
              ElementsAre("FolderKit.clsFloorDirs#1 GetFullPathToKai(1%, 2%, 3%)",
                          "FolderKit.clsFloorDirs#1 GetFullPathToKai(1%, 2%, 4%)",
                          "FolderKit.clsExistProbe#1 Find_FileExists(\"" + SwitchFile(from) + "\")",
                          "FolderKit.clsExistProbe#1 Find_FileExists(\"" + SwitchFile(to) + "\")"));
}

// Whether the source floor has a switch file at all: either way its page has
// no rows, and the copy empties the destination page.
class CopyFromAnEmptyPage : public SwitchStoreTest, public ::testing::WithParamInterface<bool> {};

TEST_P(CopyFromAnEmptyPage, EmptiesTheDestinationPage) {
  const std::string from = MakeFloorFolder(1, 1, 1);
  const std::string to = MakeFloorFolder(1, 1, 2);
  if (GetParam()) WriteSwitchFile(from, {{0, 0, 0, "page 0 only"}});
  WriteSwitchFile(to, {{3, 0, 0, "old"}, {4, 0, 0, "kept"}});

  clsHariSWDS store;
  EXPECT_TRUE(store.No_Copy1Page(1, 1, 1, 3, 1, 1, 2, 3));

  EXPECT_THAT(SwitchRows(to), ElementsAre("4 0 0 kept"));
  // A missing source file is created, empty.
  EXPECT_EQ(SwitchRows(from).size(), GetParam() ? 1u : 0u);
}

INSTANTIATE_TEST_SUITE_P(SourceFile, CopyFromAnEmptyPage, ::testing::Bool(),
                         [](const auto& info) { return info.param ? "Exists" : "Missing"; });

TEST_F(SwitchStoreTest, CopyWithinOneFloorKeepsTheSourcePage) {
  const std::string floor = MakeFloorFolder(2, 1, 1);
  WriteSwitchFile(floor, {{1, 0, 3, "a"}, {1, 1, 3, "b"}});
  clsHariSWDS store;
  store.No_Copy1Page(2, 1, 1, 1, 2, 1, 1, 7);
  EXPECT_THAT(SwitchRows(floor), ElementsAre("1 0 3 a", "1 1 3 b", "7 0 3 a", "7 1 3 b"));
}

TEST_F(SwitchStoreTest, MisuseRaisesAndLeavesTheFilesAsTheyWere) {
  const std::string floor = MakeFloorFolder(1, 1, 1);
  WriteSwitchFile(floor, {{0, 0, 0, "kept"}});

  clsHariSWDS store;
  EXPECT_RAISES(store.WriteDB(), errc::kSubscriptOutOfRange);  // buffers never filled
  EXPECT_RAISES(store.ReadDB(), errc::kObjectNotSet);
  EXPECT_RAISES(store.WriteDB(), errc::kObjectNotSet);
  EXPECT_RAISES(store.HariSW_Del_DBTBL(), errc::kObjectNotSet);
  EXPECT_RAISES(store.CloseDB(), errc::kObjectNotSet);
  EXPECT_RAISES(store.Create_SwMDB_TBL(SwitchFile(floor)), errc::kDatabaseExists);
  // A destination floor whose folder does not exist.
  EXPECT_RAISES(store.No_Copy1Page(1, 1, 1, 0, 1, 1, 9, 0), errc::kInvalidPath);
  EXPECT_FALSE(std::filesystem::exists(Native(FloorFolder(1, 1, 9))));
  EXPECT_THAT(SwitchRows(floor), ElementsAre("0 0 0 kept"));
}

// ---- The tables older floor files lack --------------------------------------------

// Each field as "NAME type size default zero-length".
std::vector<std::string> FieldsOf(dao::Database& db, const std::string& table) {
  std::vector<std::string> described;
  const auto fields = db.TableDefs()->Item(table)->Fields();
  for (std::int32_t i = 0; i < fields->Count(); ++i) {
    const auto& field = fields->Item(i);
    described.push_back(field->Name() + " " + std::to_string(field->Type()) + " " +
                        std::to_string(field->Size()) + " " + field->DefaultValue() + " " +
                        (field->AllowZeroLength() ? "zero-length" : "-"));
  }
  return described;
}

struct UpgradeCase {
  const char* table;
  bool (clsHariSWDS::*exists)(Variant&);
  void (clsHariSWDS::*create)(Variant&);
  std::vector<std::string> fields;
};
void PrintTo(const UpgradeCase& c, std::ostream* out) {
  *out << c.table;
}

class TableUpgrade : public FloorTest, public ::testing::WithParamInterface<UpgradeCase> {
 protected:
  std::shared_ptr<dao::Database> NewDatabase() {
    return dao::DBEngine::Instance()->CreateDatabase((root / "old.mdb").string(),
                                                     std::string(dao::dbLangJapanese));
  }
};

TEST_P(TableUpgrade, ATableNamedInOtherLettersDoesNotCountAndTheRealOneIsCreated) {
  const UpgradeCase& c = GetParam();
  auto db = NewDatabase();
  std::string lower = c.table;
  for (char& ch : lower)
    ch = static_cast<char>(std::tolower(static_cast<unsigned char>(ch)));
  auto impostor = db->CreateTableDef(lower);
  impostor->Fields()->Append(impostor->CreateField("PAGE", dao::dbInteger));
  db->TableDefs()->Append(impostor);

  clsHariSWDS store;
  Variant handle(db);
  EXPECT_FALSE((store.*c.exists)(handle));
  (store.*c.create)(handle);
  EXPECT_TRUE((store.*c.exists)(handle));
  EXPECT_EQ(handle, Variant(db));  // the same handle comes back

  EXPECT_EQ(db->TableDefs()->Item(c.table)->Name(), c.table);
  EXPECT_THAT(FieldsOf(*db, c.table), ::testing::ElementsAreArray(c.fields));
  EXPECT_THAT(FieldsOf(*db, lower), ElementsAre("PAGE 3 2  -"));  // left alone

  // A second creation is the engine's error, and the table stays.
  EXPECT_RAISES((store.*c.create)(handle), errc::kTableExists);
  EXPECT_TRUE((store.*c.exists)(handle));
}

TEST_P(TableUpgrade, ChecksRefuseSomethingThatIsNoDatabase) {
  const UpgradeCase& c = GetParam();
  clsHariSWDS store;
  Variant nothing;
  EXPECT_RAISES((store.*c.exists)(nothing), errc::kObjectNotSet);
  Variant number(std::int16_t{3});
  EXPECT_RAISES((store.*c.create)(number), errc::kTypeMismatch);
  Variant other(Object(std::make_shared<clsHariSWDS>()));
  EXPECT_RAISES((store.*c.exists)(other), errc::kTypeMismatch);
  auto db = NewDatabase();
  db->Close();
  Variant closed(db);
  EXPECT_RAISES((store.*c.exists)(closed), errc::kObjectInvalid);
}

INSTANTIATE_TEST_SUITE_P(
    Tables, TableUpgrade,
    ::testing::Values(UpgradeCase{"SPANTOP",
                                  &clsHariSWDS::IsTopTblExist,
                                  &clsHariSWDS::CreateTopTbl,
                                  {"PAGE 3 2 -1 -", "SUBPAGE 3 2 -1 -", "BANGOU 3 2 -1 -",
                                   "BAN 3 2 -1 -", "DATA 10 200  zero-length"}},
                      UpgradeCase{"SPANTANJOIL",
                                  &clsHariSWDS::IsTanbuJointLTblExist,
                                  &clsHariSWDS::CreateTanbuJointLTbl,
                                  {"PAGE 3 2 -1 -", "SUBPAGE 3 2 -1 -", "BANGOU 3 2 -1 -",
                                   "BAN 3 2 -1 -", "DATA 10 10  zero-length"}},
                      UpgradeCase{"STPJOUGEGENSUN",
                                  &clsHariSWDS::IsStpJougeGensunTblExist,
                                  &clsHariSWDS::CreateStpJougeGensunTbl,
                                  {"PAGE 3 2 -1 -", "SUBPAGE 3 2 -1 -", "BANGOU 3 2 -1 -",
                                   "DATA 10 200  zero-length"}}),
    [](const auto& info) { return std::string(info.param.table); });

TEST_F(SwitchStoreTest, EndJointLengthsRefuseMoreThanTenCharactersAndKeepEarlierRows) {
  auto db = dao::DBEngine::Instance()->CreateDatabase((root / "joint.mdb").string(),
                                                      std::string(dao::dbLangJapanese));
  clsHariSWDS store;
  Variant handle(db);
  store.CreateTanbuJointLTbl(handle);
  auto set = db->OpenRecordset("SPANTANJOIL");
  for (const char* data : {"1234567890", "", "長さ１２３４５６７８"}) {
    set->AddNew();
    set->SetValue("DATA", data);
    set->Update();
  }
  set->AddNew();
  set->SetValue("DATA", "12345678901");
  EXPECT_RAISES(set->Update(), errc::kFieldTooSmall);
  EXPECT_THAT(Rows(*db, "SPANTANJOIL"), ElementsAre("-1 -1 -1 -1 1234567890", "-1 -1 -1 -1 ",
                                                    "-1 -1 -1 -1 長さ１２３４５６７８"));
}

TEST_F(SwitchStoreTest, ChecksAreReachedByNameWithTheHandleByReference) {
  Variant handle(dao::DBEngine::Instance()->CreateDatabase((root / "named.mdb").string(),
                                                           std::string(dao::dbLangJapanese)));
  Object store = std::make_shared<clsHariSWDS>();
  CallByName(store, "CreateTopTbl", CallKind::Method, Ref(handle));
  EXPECT_EQ(CallByName(store, "isTopTblExist", CallKind::Method, Ref(handle)), Variant(true));
}

// ---- The through-bar copy ----------------------------------------------------------

// What the source page holds; the discarded read of the destination answers the opposite.
class ThroughBarCopy : public FloorTest, public ::testing::WithParamInterface<bool> {};

TEST_P(ThroughBarCopy, WritesTheSourceValueAfterReadingTheDestinationOnceAndAnswersFalse) {
  const bool source_value = GetParam();
  const std::string from_file = FloorFolder(1, 2, 3) + "\\Hollenbar.Dat";
  const std::string to_file = FloorFolder(4, 5, 6) + "\\Hollenbar.Dat";
  fakes.Answer(frame::ThroughBars::kProgId, "SetPathGetHikiToosiSW", [&](std::span<Variant> args) {
    return Variant(vb::CStr(args[0]) == from_file ? source_value : !source_value);
  });
  const std::string value = source_value ? "True" : "False";

  clsHikiCopyDS copier;
  EXPECT_FALSE(copier.No_Copy1Page(1, 2, 3, 7, 4, 5, 6, 9));
  EXPECT_EQ(fakes.Created(frame::ThroughBars::kProgId), 1);
  EXPECT_THAT(fakes.Log(), ElementsAre("FolderKit.clsFloorDirs#1 GetFullPathToKai(1%, 2%, 3%)",
                                       "FolderKit.clsFloorDirs#1 GetFullPathToKai(4%, 5%, 6%)",
                                       "ThroughBarStore.clsThroughBars#1 SetPathGetHikiToosiSW(\"" +
                                           from_file + "\", 7%)",
                                       "ThroughBarStore.clsThroughBars#1 SetPathGetHikiToosiSW(\"" +
                                           to_file + "\", 7%)",
                                       "ThroughBarStore.clsThroughBars#1 SetPathPutHikiToosiSW(\"" +
                                           to_file + "\", 9%, " + value + ")"));
}

INSTANTIATE_TEST_SUITE_P(SourceValue, ThroughBarCopy, ::testing::Bool(),
                         [](const auto& info) { return info.param ? "On" : "Off"; });

// ---- Lifetime -----------------------------------------------------------------------

TEST_F(FloorTest, EachDyingInstanceGivesTheLibraryNewSharedServices) {
  { clsHariSWDS store; }
  { clsHikiCopyDS copier; }
  EXPECT_EQ(fakes.Created(frame::FloorDirs::kProgId), 3);  // the start routine's, then one each
  EXPECT_EQ(fakes.Created(frame::ExistProbe::kProgId), 3);
}

}  // namespace
