// clsSeluVorneDataService: the floor file's creation, the opens for work with
// the tables they add to older files, and handles that outlive failed opens
// and refused deletes.
// Real files in a scratch data root; recording fakes for the outside
// components, so the calls the data service makes are asserted exactly.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "error_matchers.h"
#include "file_bytes.h"
#include "floor_test.h"
#include "seluvorne/floor_schema.h"
#include "seluvorne/frame.h"
#include "seluvorne/seluvorne_data_service.h"

namespace {

using namespace seluvorne;
using seluvorne::testing::ReadBytes;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using Names = std::vector<std::string>;
namespace fs = std::filesystem;

const Names kNineTables = {"TOORIMEI",  "KUTAIDATA",      "ANKANIGE",           "RSITEI",
                           "STPGENSUN", "STPJOUGEGENSUN", "SITAKINANKASETUDAN", "HANTI",
                           "HENKATEN"};

Names Plus(Names tables, std::initializer_list<const char*> more) {
  tables.insert(tables.end(), more.begin(), more.end());
  return tables;
}

// The user tables of a database, in TableDefs order (the catalogue left out).
Names UserTables(dao::Database& db) {
  Names names;
  const auto tables = db.TableDefs();
  for (std::int32_t i = 0; i < tables->Count(); ++i)
    if (std::string name = tables->Item(i)->Name(); !name.starts_with("MSys"))
      names.push_back(name);
  return names;
}

class FloorFilesTest : public seluvorne::testing::FloorTest {
 protected:
  // The service, set to floor 1-2-3 (folder created), with a clean log.
  void SetUp() override {
    FloorTest::SetUp();
    folder = MakeFloorFolder(1, 2, 3);
    file = folder + "\\SELUVORN.mdb";
    service = std::make_shared<clsSeluVorneDataService>();
    service->CurZeneNo = 1;
    service->CurKoujiNo = 2;
    service->CurKaiNo = 3;
    fakes.ClearLog();
  }

  // A floor file as an older version wrote it: the nine tables less
  // STPJOUGEGENSUN, a table "spantop" in the wrong letter case, one KUTAIDATA row.
  void WriteOldFloorFile() {
    auto db = dao::DBEngine::Instance()->CreateDatabase(file, std::string(dao::dbLangJapanese));
    for (const frame::TableSchema& table : frame::kFloorTables)
      if (std::string_view(table.name) != "STPJOUGEGENSUN") frame::CreateTable(*db, table);
    frame::CreateTable(*db, frame::TableSchema{"spantop", frame::floor_fields::kPageRow});
    auto rows = db->OpenRecordset("KUTAIDATA");
    rows->AddNew();
    rows->SetValue("DATA", "kept");
    rows->Update();
    db->Close();
  }

  std::string folder, file;
  std::shared_ptr<clsSeluVorneDataService> service;
};

// What each opener adds to an older file: the first `added` of the late
// tables that are missing, "spantop" not counting for SPANTOP.
using Service = clsSeluVorneDataService;
struct OpenerCase {
  const char* name;
  void (*open)(Service&, const std::string& folder);
  std::size_t added;
};
void PrintTo(const OpenerCase& c, std::ostream* out) {
  *out << c.name;
}

class OpenerUpgrade : public FloorFilesTest, public ::testing::WithParamInterface<OpenerCase> {};

TEST_P(OpenerUpgrade, AddsExactlyItsMissingTablesAndChangesNothingElse) {
  WriteOldFloorFile();
  GetParam().open(*service, folder);
  GetParam().open(*service, folder);  // a second open finds every table it checks for

  Names expected = Plus(kNineTables, {"spantop", "SPANTOP", "SPANTANJOIL", "STPJOUGEGENSUN"});
  expected.resize(10 + GetParam().added);
  expected.erase(expected.begin() + 5);  // STPJOUGEGENSUN, where the old file lacks it
  auto db = dao::DBEngine::Instance()->OpenDatabase(file);
  EXPECT_THAT(UserTables(*db), ElementsAreArray(expected));
  EXPECT_EQ(db->OpenRecordset("KUTAIDATA")->Value("DATA"), vb::Variant("kept"));
}

INSTANTIATE_TEST_SUITE_P(
    Openers, OpenerUpgrade,
    ::testing::Values(
        OpenerCase{"CurrKai", [](Service& s, const std::string& f) { s.SetCurrKai(f); }, 3},
        OpenerCase{"OpenDB_Sitei", [](Service& s, const std::string&) { s.OpenDB_Sitei(0); }, 1},
        OpenerCase{
            "OpenDB_Sitei_Copy",
            [](Service& s, const std::string& f) { s.OpenDB_Sitei_Copy(f + "\\SELUVORN.mdb"); },
            2}),
    [](const auto& info) { return std::string(info.param.name); });

TEST_F(FloorFilesTest, AMissingFloorIsCreatedByModeOneOnly) {
  // Mode 0: False, nothing created, KutaiDb emptied.
  service->Create_SeluVorneTBL_for_Copy(root.string() + "\\elsewhere.mdb");
  EXPECT_FALSE(service->OpenDB_Sitei(0));
  EXPECT_FALSE(service->KutaiDb);
  EXPECT_TRUE(fs::is_empty(Native(folder)));

  // Mode 1 without a companion: 91, once both files exist.
  EXPECT_RAISES(service->OpenDB_Sitei(1), errc::kObjectNotSet);
  EXPECT_FALSE(service->KutaiDb);
  const std::string build_out = ReadBytes(Native(folder + "\\HARIFUKA.mdb"));
  ASSERT_FALSE(build_out.empty());

  // Again with a companion, the floor file gone: the build-out file is kept as it is.
  ASSERT_TRUE(fs::remove(Native(file)));
  service->FloorCompanion = fakes::MakeFakeObject(fakes, "FloorCompanion");
  fakes.ClearLog();
  EXPECT_TRUE(service->OpenDB_Sitei(1));
  EXPECT_THAT(fakes.Log(),
              ElementsAre("FolderKit.clsFloorDirs#1 GetFullPathToKai(1%, 2%, 3%)",
                          "FolderKit.clsExistProbe#1 Find_FileExists(\"" + file + "\", 0&)",
                          "FloorCompanion#1 CreateMDB_FullPath(\"" + file + "\")"));
  ASSERT_TRUE(service->KutaiDb);
  EXPECT_THAT(UserTables(*service->KutaiDb), ElementsAreArray(Plus(kNineTables, {"SPANTOP"})));
  EXPECT_EQ(ReadBytes(Native(folder + "\\HARIFUKA.mdb")), build_out);
}

TEST_F(FloorFilesTest, HandlesOutliveFailedOpensAndRefusedDeletes) {
  EXPECT_RAISES(service->CloseDB(), errc::kObjectNotSet);
  service->WriteOpen(folder);
  const auto writer = service->WriteOpenDb;
  service->SetCurrKai(folder);
  const auto handle = service->KutaiDb;
  const std::string bad = MakeFloorFolder(1, 1, 2);
  seluvorne::testing::WriteBytes(Native(bad + "\\SELUVORN.mdb"), "not a database");
  EXPECT_RAISES(service->SetCurrKai(bad), errc::kUnrecognizedFormat);
  EXPECT_EQ(service->KutaiDb, handle);
  EXPECT_EQ(service->CurrKai(), folder);

  // KutaiDb holds the file open, so the delete is refused after WriteOpenDb is closed.
  EXPECT_RAISES(service->DeleteMdbByPath(folder), errc::kPermissionDenied);
  EXPECT_FALSE(service->WriteOpenDb);
  EXPECT_RAISES(writer->TableDefs(), errc::kObjectInvalid);
  service->CloseDB();
  EXPECT_EQ(service->KutaiDb, handle);  // closed, but kept
  EXPECT_RAISES(service->CloseDB(), errc::kObjectInvalid);
  service->DeleteMdbByPath(folder);
  EXPECT_FALSE(fs::exists(Native(file)));
}

// ---- Lifetime -----------------------------------------------------------------------

}  // namespace
