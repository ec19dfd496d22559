// The floor file of clsSeluVorneDataService: creation, the opens for work
// with the tables they add to older files, closing, emptying and deletion.
// Real files in a scratch data root; recording fakes for the outside
// components, so the calls the data service makes are asserted exactly.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "error_matchers.h"
#include "floor_test.h"
#include "seluvorne/call_by_name.h"
#include "seluvorne/floor_schema.h"
#include "seluvorne/frame.h"
#include "seluvorne/seluvorne_data_service.h"

namespace {

using namespace seluvorne;
using seluvorne::testing::FloorTest;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using vb::Variant;
namespace fs = std::filesystem;

const std::vector<std::string> kNineTables = {
    "TOORIMEI",       "KUTAIDATA",          "ANKANIGE", "RSITEI",  "STPGENSUN",
    "STPJOUGEGENSUN", "SITAKINANKASETUDAN", "HANTI",    "HENKATEN"};

std::vector<std::string> Plus(std::vector<std::string> tables,
                              std::initializer_list<const char*> more) {
  tables.insert(tables.end(), more.begin(), more.end());
  return tables;
}

// The user tables of a database, in TableDefs order (the catalogue left out).
std::vector<std::string> UserTables(dao::Database& db) {
  std::vector<std::string> names;
  const auto tables = db.TableDefs();
  for (std::int32_t i = 0; i < tables->Count(); ++i) {
    std::string name = tables->Item(i)->Name();
    if (name.rfind("MSys", 0) != 0) names.push_back(name);
  }
  return names;
}

std::vector<std::string> UserTables(const std::string& path) {
  return UserTables(*dao::DBEngine::Instance()->OpenDatabase(path));
}

std::string Bytes(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

std::int32_t CountRows(dao::Database& db, const std::string& table) {
  auto rows = db.OpenRecordset("SELECT * FROM " + table + ";", dao::dbOpenSnapshot);
  if (!rows->IsEOF()) rows->MoveLast();
  return rows->RecordCount();
}

class FloorFilesTest : public FloorTest {
 protected:
  std::string FloorFile(const std::string& folder) const { return folder + "\\SELUVORN.mdb"; }

  // A floor file as an older version wrote it: the nine tables, less those
  // named, plus `extra` tables of the floor-row shape, and one KUTAIDATA row.
  void WriteOldFloorFile(const std::string& path, std::initializer_list<const char*> missing,
                         std::initializer_list<const char*> extra = {}) {
    auto db = dao::DBEngine::Instance()->CreateDatabase(path, std::string(dao::dbLangJapanese));
    for (const frame::TableSchema& table : frame::kFloorTables)
      if (std::find(missing.begin(), missing.end(), table.name) == missing.end())
        frame::CreateTable(*db, table);
    for (const char* name : extra)
      frame::CreateTable(*db, frame::TableSchema{name, frame::floor_fields::kPageRow});
    auto rows = db->OpenRecordset("KUTAIDATA");
    rows->AddNew();
    rows->SetValue("PAGE", std::int16_t{4});
    rows->SetValue("DATA", "kept");
    rows->Update();
    db->Close();
  }

  std::shared_ptr<clsSeluVorneDataService> NewService() {
    auto service = std::make_shared<clsSeluVorneDataService>();
    fakes.ClearLog();
    return service;
  }
};

// ---- Creation and the first open -----------------------------------------------

TEST_F(FloorFilesTest, OpeningAFloorWhoseFolderIsMissingCreatesFolderFileAndElevenTables) {
  const std::string folder = FloorFolder(1, 2, 3);
  auto service = NewService();
  service->SetCurrKai(folder);

  EXPECT_EQ(service->CurrKai(), folder);
  ASSERT_TRUE(service->KutaiDb);
  EXPECT_THAT(UserTables(*service->KutaiDb),
              ElementsAreArray(Plus(kNineTables, {"SPANTOP", "SPANTANJOIL"})));
  EXPECT_THAT(
      fakes.Log(),
      ElementsAre("FolderKit.clsExistProbe#1 Find_FileExists(\"" + FloorFile(folder) + "\")",
                  "FolderKit.clsExistProbe#1 Find_FileExists(\"" + folder + "\", 16&)",
                  "FolderKit.clsFloorDirs#1 MakeMkDir(\"" + folder + "\")"));
  EXPECT_TRUE(service->SwStore);  // made for the table checks

  // A new integer field reads -1; a text field takes "".
  auto rows = service->KutaiDb->OpenRecordset("ANKANIGE");
  rows->AddNew();
  rows->SetValue("DATA", "");
  rows->Update();
  auto read = service->KutaiDb->OpenRecordset("SELECT * FROM ANKANIGE;");
  EXPECT_EQ(read->Value("PAGE"), Variant(std::int16_t{-1}));
  EXPECT_EQ(read->Value("BAN"), Variant(std::int16_t{-1}));
  EXPECT_EQ(read->Value("DATA"), Variant(""));
}

TEST_F(FloorFilesTest, CreatingOverAnExistingFileRaisesAndLeavesItByteForByte) {
  const std::string folder = MakeFloorFolder(1, 1, 1);
  WriteOldFloorFile(FloorFile(folder), {});
  const std::string before = Bytes(Native(FloorFile(folder)));
  auto service = NewService();

  EXPECT_RAISES(service->Create_SeluVorneTBL(FloorFile(folder)), errc::kDatabaseExists);
  EXPECT_RAISES(service->Create_SeluVornMDB(folder), errc::kDatabaseExists);
  EXPECT_RAISES(service->Create_SeluVorneTBL_for_Copy(FloorFile(folder)), errc::kDatabaseExists);
  EXPECT_EQ(Bytes(Native(FloorFile(folder))), before);
  EXPECT_FALSE(service->KutaiDb);
  // A missing folder is the engine's error; nothing is made.
  EXPECT_RAISES(service->Create_SeluVornMDB_FullPath(FloorFile(FloorFolder(9, 9, 9))),
                errc::kInvalidPath);
  EXPECT_FALSE(fs::exists(Native(FloorFolder(9, 9, 9))));

  // The copy creator leaves a new file open in KutaiDb, as created: no late tables.
  service->Create_SeluVorneTBL_for_Copy(root.string() + "\\copy.mdb");
  ASSERT_TRUE(service->KutaiDb);
  EXPECT_THAT(UserTables(*service->KutaiDb), ElementsAreArray(kNineTables));
  EXPECT_EQ(service->GetFileName(""), "\\SELUVORN.mdb");
}

// ---- The tables each opener adds to an older file --------------------------------

struct OpenerCase {
  const char* name;
  std::function<void(clsSeluVorneDataService&, const std::string& folder)> open;
  std::vector<std::string> added;  // to a file that lacks all three late tables
};
void PrintTo(const OpenerCase& c, std::ostream* out) {
  *out << c.name;
}

class OpenerUpgrade : public FloorFilesTest, public ::testing::WithParamInterface<OpenerCase> {};

TEST_P(OpenerUpgrade, AddsExactlyItsMissingTablesAndChangesNothingElse) {
  const std::string folder = MakeFloorFolder(1, 2, 3);
  const std::vector<std::string> old_tables = {"TOORIMEI", "KUTAIDATA", "ANKANIGE",
                                               "RSITEI",   "STPGENSUN", "SITAKINANKASETUDAN",
                                               "HANTI",    "HENKATEN",  "spantop"};
  WriteOldFloorFile(FloorFile(folder), {"STPJOUGEGENSUN"}, {"spantop"});
  auto service = NewService();
  service->CurZeneNo = 1;
  service->CurKoujiNo = 2;
  service->CurKaiNo = 3;
  GetParam().open(*service, folder);

  std::vector<std::string> expected = old_tables;
  expected.insert(expected.end(), GetParam().added.begin(), GetParam().added.end());
  auto db = dao::DBEngine::Instance()->OpenDatabase(FloorFile(folder));
  EXPECT_THAT(UserTables(*db), ElementsAreArray(expected));
  EXPECT_EQ(CountRows(*db, "KUTAIDATA"), 1);
  EXPECT_EQ(CountRows(*db, "spantop"), 0);

  // A second open finds every table it checks for and adds nothing.
  GetParam().open(*service, folder);
  EXPECT_THAT(UserTables(*db), ElementsAreArray(expected));
}

INSTANTIATE_TEST_SUITE_P(
    Openers, OpenerUpgrade,
    ::testing::Values(
        OpenerCase{"CurrKai",
                   [](clsSeluVorneDataService& s, const std::string& f) { s.SetCurrKai(f); },
                   {"SPANTOP", "SPANTANJOIL", "STPJOUGEGENSUN"}},
        OpenerCase{"WriteOpen",
                   [](clsSeluVorneDataService& s, const std::string& f) { s.WriteOpen(f); },
                   {"SPANTOP", "SPANTANJOIL", "STPJOUGEGENSUN"}},
        OpenerCase{
            "OpenDB_Sitei",
            [](clsSeluVorneDataService& s, const std::string&) { EXPECT_TRUE(s.OpenDB_Sitei(0)); },
            {"SPANTOP"}},
        OpenerCase{"OpenDB_Sitei_Copy",
                   [](clsSeluVorneDataService& s, const std::string& f) {
                     EXPECT_FALSE(s.OpenDB_Sitei_Copy(f + "\\SELUVORN.mdb"));
                   },
                   {"SPANTOP", "SPANTANJOIL"}}),
    [](const auto& info) { return std::string(info.param.name); });

// ---- Opening a floor by its numbers ----------------------------------------------

TEST_F(FloorFilesTest, MissingFloorWithModeZeroAnswersFalseCreatesNothingAndEmptiesKutaiDb) {
  const std::string folder = MakeFloorFolder(1, 2, 3);
  auto service = NewService();
  service->Create_SeluVorneTBL_for_Copy(root.string() + "\\elsewhere.mdb");
  ASSERT_TRUE(service->KutaiDb);
  service->CurZeneNo = 1;
  service->CurKoujiNo = 2;
  service->CurKaiNo = 3;

  EXPECT_FALSE(service->OpenDB_Sitei(0));
  EXPECT_FALSE(service->KutaiDb);
  EXPECT_TRUE(fs::is_empty(Native(folder)));
  EXPECT_THAT(fakes.Log(), ElementsAre("FolderKit.clsFloorDirs#1 GetFullPathToKai(1%, 2%, 3%)",
                                       "FolderKit.clsExistProbe#1 Find_FileExists(\"" +
                                           FloorFile(folder) + "\", 0&)"));
}

TEST_F(FloorFilesTest, MissingFloorWithModeOneCreatesBothFilesAndAsksTheCompanion) {
  const std::string folder = MakeFloorFolder(1, 2, 3);
  auto service = NewService();
  service->FloorCompanion = fakes::MakeFakeObject(fakes, "FloorCompanion");
  service->CurZeneNo = 1;
  service->CurKoujiNo = 2;
  service->CurKaiNo = 3;

  EXPECT_TRUE(service->OpenDB_Sitei(1));
  EXPECT_THAT(
      fakes.Log(),
      ElementsAre("FolderKit.clsFloorDirs#1 GetFullPathToKai(1%, 2%, 3%)",
                  "FolderKit.clsExistProbe#1 Find_FileExists(\"" + FloorFile(folder) + "\", 0&)",
                  "FloorCompanion#1 CreateMDB_FullPath(\"" + FloorFile(folder) + "\")"));
  ASSERT_TRUE(service->KutaiDb);
  EXPECT_THAT(UserTables(*service->KutaiDb), ElementsAreArray(Plus(kNineTables, {"SPANTOP"})));
  EXPECT_THAT(UserTables(folder + "\\HARIFUKA.mdb"), ElementsAre("KUTAIDATA"));
  EXPECT_TRUE(service->FukasiStore);
}

TEST_F(FloorFilesTest, AnExistingBuildOutFileIsKeptAndAnEmptyCompanionRaisesAfterBothFilesExist) {
  const std::string folder = MakeFloorFolder(1, 2, 3);
  const std::string build_out = folder + "\\HARIFUKA.mdb";
  {
    clsHariFukasiDS maker;
    maker.Create_HariFukasiMDB_FullPath(build_out);
  }
  const std::string before = Bytes(Native(build_out));
  auto service = NewService();
  service->Create_SeluVorneTBL_for_Copy(root.string() + "\\elsewhere.mdb");
  const auto previous = service->KutaiDb;
  service->CurZeneNo = 1;
  service->CurKoujiNo = 2;
  service->CurKaiNo = 3;

  EXPECT_RAISES(service->OpenDB_Sitei(1), errc::kObjectNotSet);
  EXPECT_TRUE(fs::is_regular_file(Native(FloorFile(folder))));
  EXPECT_EQ(Bytes(Native(build_out)), before);
  EXPECT_FALSE(service->FukasiStore);  // not needed: the file was there
  EXPECT_EQ(service->KutaiDb, previous);

  // The floor file now exists, so any mode opens it.
  EXPECT_TRUE(service->OpenDB_Sitei(0));
  EXPECT_NE(service->KutaiDb, previous);
}

TEST_F(FloorFilesTest, TheCopyOpenerAnswersFalseAlwaysAndNeverCreatesAFolder) {
  const std::string folder = MakeFloorFolder(1, 1, 1);
  auto service = NewService();
  EXPECT_FALSE(service->OpenDB_Sitei_Copy(FloorFile(folder)));  // created
  ASSERT_TRUE(service->KutaiDb);
  EXPECT_FALSE(service->OpenDB_Sitei_Copy(FloorFile(folder)));  // opened
  EXPECT_THAT(UserTables(*service->KutaiDb),
              ElementsAreArray(Plus(kNineTables, {"SPANTOP", "SPANTANJOIL"})));
  EXPECT_RAISES(service->OpenDB_Sitei_Copy(FloorFile(FloorFolder(7, 7, 7))), errc::kInvalidPath);
  EXPECT_FALSE(fs::exists(Native(FloorFolder(7, 7, 7))));
}

// ---- Handles, closing, emptying, deleting -----------------------------------------

TEST_F(FloorFilesTest, CloseDBKeepsTheClosedHandleAndWriteOpenClosesThePreviousOne) {
  auto service = NewService();
  EXPECT_RAISES(service->CloseDB(), errc::kObjectNotSet);
  service->SetCurrKai(MakeFloorFolder(1, 1, 1));
  const auto handle = service->KutaiDb;
  service->CloseDB();
  EXPECT_EQ(service->KutaiDb, handle);
  EXPECT_RAISES(service->CloseDB(), errc::kObjectInvalid);

  service->WriteOpen(MakeFloorFolder(1, 1, 1));
  const auto first = service->WriteOpenDb;
  EXPECT_TRUE(service->WriteOpen(MakeFloorFolder(1, 1, 2)));
  EXPECT_RAISES(first->TableDefs(), errc::kObjectInvalid);
  EXPECT_NE(service->WriteOpenDb, first);
}

TEST_F(FloorFilesTest, FailedOpensKeepTheHandlesAndTheCurrentFloor) {
  const std::string good = MakeFloorFolder(1, 1, 1);
  auto service = NewService();
  service->SetCurrKai(good);
  const auto handle = service->KutaiDb;
  // A file that is no database of ours.
  const std::string bad = MakeFloorFolder(1, 1, 2);
  std::ofstream(Native(FloorFile(bad))) << "not a database";
  EXPECT_RAISES(service->SetCurrKai(bad), errc::kUnrecognizedFormat);
  EXPECT_EQ(service->KutaiDb, handle);
  EXPECT_EQ(service->CurrKai(), good);
  std::shared_ptr<dao::Database> out = handle;
  EXPECT_RAISES(service->OpenSeluVorne(bad, out), errc::kUnrecognizedFormat);
  EXPECT_EQ(out, handle);
}

TEST_F(FloorFilesTest, DeleteRemovesTheFileClosingTheWriteHandleButNotKutaiDb) {
  const std::string folder = MakeFloorFolder(1, 1, 1);
  auto service = NewService();
  service->DeleteMdbByPath(folder);  // no file: nothing to do
  service->WriteOpen(folder);
  const auto writer = service->WriteOpenDb;
  service->SetCurrKai(folder);

  // KutaiDb still holds the file open: the platform refuses.
  EXPECT_RAISES(service->DeleteMdbByPath(folder), errc::kPermissionDenied);
  EXPECT_FALSE(service->WriteOpenDb);
  EXPECT_RAISES(writer->TableDefs(), errc::kObjectInvalid);
  EXPECT_TRUE(fs::exists(Native(FloorFile(folder))));

  service->CloseDB();
  service->DeleteMdbByPath(folder);
  EXPECT_FALSE(fs::exists(Native(FloorFile(folder))));
}

TEST_F(FloorFilesTest, DeleteAllDataRaisesTheEnginesSyntaxErrorAndDeletesNoRow) {
  const std::string folder = MakeFloorFolder(1, 1, 1);
  WriteOldFloorFile(FloorFile(folder), {});
  auto service = NewService();
  service->DeleteAllDataDB(FloorFolder(5, 5, 5));  // no file: nothing to do
  EXPECT_FALSE(service->KutaiDb);

  EXPECT_RAISES(service->DeleteAllDataDB(folder), errc::kSyntaxError);
  ASSERT_TRUE(service->KutaiDb);  // opened there, as WriteOpenDb held nothing
  EXPECT_EQ(service->CurrKai(), folder);
  EXPECT_EQ(CountRows(*service->KutaiDb, "KUTAIDATA"), 1);

  // With a write handle, KutaiDb is used as it stands: here, nothing.
  auto other = NewService();
  other->WriteOpen(folder);
  EXPECT_RAISES(other->DeleteAllDataDB(folder), errc::kObjectNotSet);
  EXPECT_EQ(CountRows(*service->KutaiDb, "KUTAIDATA"), 1);
}

}  // namespace
