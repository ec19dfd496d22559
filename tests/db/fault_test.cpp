// Storage faults: every writing path, the engine's and the stores' (a floor
// made or upgraded by its opener, the page writers and WriteDB, the build-out
// and switch files), driven through a VFS that fails the disk under it. Each
// fault raises its number and never crashes; the file it hit holds what was
// committed before, passes SQLite's integrity check, and is nothing a later
// call refuses: the same call succeeds once the disk is sound again.

#include <SQLiteCpp/SQLiteCpp.h>
#include <gmock/gmock.h>

#include <functional>
#include <map>
#include <optional>

#include "error_matchers.h"
#include "fault_vfs.h"
#include "floor_test.h"
#include "seluvorne/dao.h"
#include "seluvorne/files.h"
#include "seluvorne/floor_schema.h"
#include "seluvorne/hari_fukasi_ds.h"
#include "seluvorne/hari_sw_ds.h"
#include "seluvorne/runtime.h"
#include "seluvorne/sample_pages.h"
#include "seluvorne/seluvorne_data_service.h"

namespace seluvorne::testing {
namespace {

namespace fs = std::filesystem;
using namespace seluvorne::errc;

// Every database of this test program is opened through the shim, which
// passes everything through while disarmed.
const bool installed = (InstallFaultVfs(), true);

struct FaultCase {
  const char* path;  // the writing path, a name Path() knows
  Fault fault;
  int skip;  // calls that pass before the fault
  int error;
};

std::ostream& operator<<(std::ostream& out, const FaultCase& fault) {
  static constexpr const char* kNames[] = {"none",       "write error", "disk full", "sync error",
                                           "open error", "read-only",   "locked"};
  return out << fault.path << ": " << kNames[static_cast<int>(fault.fault)] << " after "
             << fault.skip;
}

// The rows of each table of a file, read past the engine; nothing when the
// file is not there. The file must pass the integrity check.
using Contents = std::optional<std::map<std::string, std::int64_t>>;
Contents ContentsOf(const fs::path& file) {
  if (!fs::exists(file)) return std::nullopt;
  SQLite::Database sqlite(file.string(), SQLite::OPEN_READONLY);
  EXPECT_EQ(sqlite.execAndGet("PRAGMA integrity_check").getString(), "ok") << file;
  std::map<std::string, std::int64_t> rows;
  SQLite::Statement tables(sqlite, "SELECT name FROM sqlite_master WHERE type = 'table'");
  while (tables.executeStep()) {
    const std::string table = tables.getColumn(0).getString();
    rows[table] = sqlite.execAndGet("SELECT COUNT(*) FROM \"" + table + "\"").getInt64();
  }
  return rows;
}

// Files a creation or a copy builds before putting them in place.
std::vector<std::string> TemporaryFilesUnder(const fs::path& root) {
  std::vector<std::string> found;
  for (const auto& entry : fs::recursive_directory_iterator(root)) {
    const std::string name = entry.path().filename().string();
    if (name.find(".creating-") != std::string::npos || name.find(".copying") != std::string::npos)
      found.push_back(name);
  }
  return found;
}

void AddRows(const std::string& file, const std::string& table,
             const std::vector<std::string>& fields,
             const std::vector<std::vector<vb::Variant>>& rows) {
  auto db = dao::DBEngine::Instance()->OpenDatabase(file);
  auto set = db->OpenRecordset(table, dao::dbOpenDynaset);
  for (const auto& row : rows) {
    set->AddNew();
    for (std::size_t i = 0; i < fields.size(); ++i)
      set->SetValue(fields[i], row[i]);
    set->Update();
  }
  db->Close();
}

class FaultTest : public FloorTest, public ::testing::WithParamInterface<FaultCase> {
 protected:
  void TearDown() override {
    Disarm();
    dao::DBEngine::Instance()->SetBusyTimeout(5000);
    Release();
    FloorTest::TearDown();
  }

  // A writing path: the file it writes, and the call, which opens what it
  // needs that is not open already.
  struct WritingPath {
    fs::path file;
    std::function<void()> write;
  };

  std::string PathOf(const std::string& name) const { return (root / name).string(); }
  std::string FileOf(const std::string& floor, std::string_view name) const {
    return floor + "\\" + std::string(name);
  }
  // Every handle and store of the test, closed.
  void Release() {
    db.reset();
    service.reset();
    build_out.reset();
    switches.reset();
  }
  clsSeluVorneDataService& Service() {
    if (!service) service = std::make_shared<clsSeluVorneDataService>();
    return *service;
  }

  // The engine's file: KUTAIDATA with six rows, open.
  void MakeEngineFile() {
    db = dao::DBEngine::Instance()->CreateDatabase(PathOf("SELUVORN.mdb"),
                                                   std::string(dao::dbLangJapanese));
    frame::CreateTable(*db, {"KUTAIDATA", frame::floor_fields::kPageRow});
    std::vector<std::vector<vb::Variant>> rows;
    for (std::int16_t row = 0; row < 6; ++row)
      rows.push_back({std::int16_t{3}, row, row, "d" + vb::StrTrimmed(row)});
    AddRows(PathOf("SELUVORN.mdb"), "KUTAIDATA", kPageFields, rows);
  }
  dao::Database& EngineFile() {
    if (!db) db = dao::DBEngine::Instance()->OpenDatabase(PathOf("SELUVORN.mdb"));
    return *db;
  }
  void AddEngineRow(std::int16_t page) {
    AddRows(PathOf("SELUVORN.mdb"), "KUTAIDATA", kPageFields,
            {{page, std::int16_t{0}, std::int16_t{0}, "new"}});
  }

  // A floor with typical pages 1 and 2.
  std::string MakeFloorWithPages() {
    const std::string floor = MakeFloorFolder(1, 1, 1);
    sample::WriteFloor(Service(), floor, 3);
    Release();
    return floor;
  }

  // The writing paths; each prepares its files, disarmed.
  WritingPath Path(std::string_view name) {
    if (name == "CreateDatabase") {
      MakeEngineFile();
      return {PathOf("new.mdb"), [this] {
                dao::DBEngine::Instance()->CreateDatabase(PathOf("new.mdb"),
                                                          std::string(dao::dbLangJapanese));
              }};
    }
    if (name == "AddNew/Update") {
      MakeEngineFile();
      return {PathOf("SELUVORN.mdb"), [this] {
                EngineFile();
                AddEngineRow(9);
              }};
    }
    if (name == "Execute") {
      MakeEngineFile();
      return {PathOf("SELUVORN.mdb"), [this] {
                EngineFile().Execute("DELETE * FROM KUTAIDATA WHERE PAGE = 3 ;",
                                     dao::dbFailOnError);
              }};
    }
    if (name == "CopyFile") {
      MakeEngineFile();
      return {PathOf("copy.mdb"), [this] {
                EngineFile();
                files::CopyFile(PathOf("SELUVORN.mdb"), PathOf("copy.mdb"));
              }};
    }
    if (name == "OpenDatabase") {
      MakeEngineFile();
      db.reset();  // the open itself meets the fault
      return {PathOf("SELUVORN.mdb"), [this] {
                EngineFile();
                AddEngineRow(9);
              }};
    }
    if (name == "CurrKai, older floor") {  // the tables older floors lack are added
      const std::string floor = MakeFloorFolder(1, 1, 1);
      Service().Create_SeluVornMDB(floor);
      AddRows(FileOf(floor, "SELUVORN.mdb"), "TOORIMEI", {"PAGE", "TOORI", "KASYO"},
              {{std::int16_t{1}, "X1", "1"}});
      Release();
      return {Native(FileOf(floor, "SELUVORN.mdb")),
              [this, floor] { Service().SetCurrKai(floor); }};
    }
    if (name == "page writers") {  // a writer: one page of one table
      const std::string floor = MakeFloorWithPages();
      return {Native(FileOf(floor, "SELUVORN.mdb")), [this, floor] {
                sample::PageTexts texts = sample::TypicalPage(5);
                Service().WriteOpen(floor);
                Service().Write_KutaiData(5, texts.kutai_data);
              }};
    }
    if (name == "WriteDB") {  // page 1 read and written back as page 2
      const std::string floor = MakeFloorWithPages();
      return {Native(FileOf(floor, "SELUVORN.mdb")), [this, floor] {
                Service().SetCurrKai(floor);
                Service().pPageNo = 1;
                Service().ReadDB();
                Service().pPageNo = 2;
                Service().WriteDB();
              }};
    }
    if (name == "build-out WriteDB") {
      const std::string floor = MakeFloorFolder(1, 1, 1);
      const std::string file = FileOf(floor, clsHariFukasiDS::kFileName);
      clsHariFukasiDS().Create_HariFukasi_TBL(file);
      AddRows(file, "KUTAIDATA", {"PAGE", "SPANNO", "ITI", "SYURUI", "BANGOU", "DATA"},
              {{std::int16_t{1}, std::int16_t{0}, std::int16_t{0}, std::int16_t{0}, std::int16_t{0},
                "one"},
               {std::int16_t{2}, std::int16_t{1}, std::int16_t{1}, std::int16_t{1}, std::int16_t{0},
                "two"}});
      return {Native(file), [this, floor] {
                if (!build_out) build_out = std::make_shared<clsHariFukasiDS>();
                build_out->WriteDB_Open(floor);
                build_out->pPageNo = 1;
                build_out->ReadDB();
                build_out->pPageNo = 2;
                build_out->WriteDB();
              }};
    }
    if (name == "switch page copy") {  // into a file that has rows
      const std::string from = MakeFloorFolder(1, 1, 1), to = MakeFloorFolder(1, 1, 2);
      AddSwitchRows(from, {{2, 0, 1, "on"}, {2, 4, 7, "x"}});
      AddSwitchRows(to, {{5, 9, 9, "old"}, {6, 0, 0, "kept"}});
      return {Native(FileOf(to, clsHariSWDS::kFileName)), [this] { CopySwitchPage(); }};
    }
    ADD_FAILURE() << "no path " << name;
    return {root / "none", [] {}};
  }

  void AddSwitchRows(const std::string& floor,
                     std::initializer_list<std::tuple<int, int, int, const char*>> rows) {
    const std::string file = FileOf(floor, clsHariSWDS::kFileName);
    clsHariSWDS().Create_SwMDB_TBL(file);
    std::vector<std::vector<vb::Variant>> values;
    for (const auto& [page, span, kind, data] : rows)
      values.push_back({std::int16_t(page), std::int16_t(span), std::int16_t(kind), data});
    AddRows(file, "SELUVORNESW", {"PAGE", "SPAN", "DATAKIND", "DATA"}, values);
  }
  void CopySwitchPage() {
    if (!switches) switches = std::make_shared<clsHariSWDS>();
    switches->No_Copy1Page(1, 1, 1, 2, 1, 1, 2, 5);
  }

  static inline const std::vector<std::string> kPageFields = {"PAGE", "SUBPAGE", "BANGOU", "DATA"};
  std::shared_ptr<dao::Database> db;
  std::shared_ptr<clsSeluVorneDataService> service;
  std::shared_ptr<clsHariFukasiDS> build_out;
  std::shared_ptr<clsHariSWDS> switches;
};

TEST_P(FaultTest, RaisesItsNumberAndLosesNothing) {
  const FaultCase& fault = GetParam();
  WritingPath path = Path(fault.path);
  const Contents before = ContentsOf(path.file);
  // The writer whose lock is met has the file open: its log index is live,
  // and an opener finds it so.
  std::optional<SQLite::Database> writer;
  if (fault.fault == Fault::kLocked && before) {
    writer.emplace(path.file.string(), SQLite::OPEN_READWRITE);
    writer->exec("SELECT COUNT(*) FROM sqlite_master");
  }
  dao::DBEngine::Instance()->SetBusyTimeout(0);
  Arm(fault.fault, fault.skip);
  EXPECT_RAISES(path.write(), fault.error);
  EXPECT_GT(FaultsInjected(), 0);
  Disarm();
  Release();
  writer.reset();

  // The file holds what it held, whole: a file that was not there before
  // may have been made, and is then complete. Nothing half-built is left.
  const Contents after = ContentsOf(path.file);
  if (before) {
    EXPECT_EQ(after, before);
  }
  EXPECT_THAT(TemporaryFilesUnder(root), ::testing::IsEmpty());
  // Nothing in the way of the same call on a sound disk.
  path.write();
  Release();
  EXPECT_TRUE(ContentsOf(path.file).has_value());
}

INSTANTIATE_TEST_SUITE_P(
    Faults, FaultTest,
    ::testing::Values(FaultCase{"CreateDatabase", Fault::kWriteError, 0, kDiskError},
                      FaultCase{"CreateDatabase", Fault::kDiskFull, 3, kDiskFull},
                      FaultCase{"CreateDatabase", Fault::kOpenError, 0, kCannotOpenFile},
                      FaultCase{"AddNew/Update", Fault::kDiskFull, 0, kDiskFull},
                      FaultCase{"AddNew/Update", Fault::kLocked, 0, kLocked},
                      FaultCase{"Execute", Fault::kWriteError, 1, kDiskError},
                      FaultCase{"Execute", Fault::kLocked, 0, kLocked},
                      FaultCase{"CopyFile", Fault::kDiskFull, 0, kDiskFull},
                      FaultCase{"CopyFile", Fault::kSyncError, 0, kDiskError},
                      FaultCase{"CopyFile", Fault::kOpenError, 0, kCannotOpenFile},
                      FaultCase{"OpenDatabase", Fault::kReadOnly, 0, kCannotOpenFile},
                      FaultCase{"CurrKai, older floor", Fault::kWriteError, 0, kDiskError},
                      FaultCase{"CurrKai, older floor", Fault::kDiskFull, 1, kDiskFull},
                      FaultCase{"CurrKai, older floor", Fault::kLocked, 0, kLocked},
                      FaultCase{"CurrKai, older floor", Fault::kOpenError, 0, kCannotOpenFile},
                      FaultCase{"page writers", Fault::kDiskFull, 3, kDiskFull},
                      FaultCase{"page writers", Fault::kLocked, 0, kLocked},
                      FaultCase{"WriteDB", Fault::kWriteError, 0, kDiskError},
                      FaultCase{"WriteDB", Fault::kDiskFull, 10, kDiskFull},
                      FaultCase{"WriteDB", Fault::kOpenError, 0, kCannotOpenFile},
                      FaultCase{"build-out WriteDB", Fault::kDiskFull, 0, kDiskFull},
                      FaultCase{"build-out WriteDB", Fault::kReadOnly, 0, kCannotOpenFile},
                      FaultCase{"switch page copy", Fault::kWriteError, 0, kDiskError},
                      FaultCase{"switch page copy", Fault::kLocked, 1, kLocked}));

}  // namespace
}  // namespace seluvorne::testing
