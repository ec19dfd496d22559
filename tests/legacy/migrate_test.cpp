// Migrating legacy floors: every floor converts with nothing lost and then
// works as a native floor; a floor that cannot be read whole is left exactly
// as it was; salvage reports its losses; and a migration killed between any
// two file operations is finished or undone by the next run.

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <map>

#include "error_matchers.h"
#include "file_bytes.h"
#include "floor_test.h"
#include "manifest.h"
#include "seluvorne/dao.h"
#include "seluvorne/hari_fukasi_ds.h"
#include "seluvorne/legacy.h"
#include "seluvorne/seluvorne_data_service.h"

namespace seluvorne::testing {
namespace {

namespace fs = std::filesystem;

const char* const kFloorFiles[] = {"SELUVORN.mdb", "HARIFUKA.mdb", "SeluVorneSW.MDB"};

// Every file of a folder with its bytes.
std::map<std::string, std::string> Snapshot(const fs::path& folder) {
  std::map<std::string, std::string> files;
  for (const auto& entry : fs::directory_iterator(folder))
    files[entry.path().filename().string()] = ReadBytes(entry.path());
  return files;
}

class Migration : public FloorTest {
 protected:
  // A floor folder holding the fixture floor's files.
  fs::path Floor(const std::string& fixture_floor) {
    fs::path folder = root / ("floor-" + std::to_string(++floors_));
    fs::create_directories(folder);
    for (const auto& entry : fs::directory_iterator(Fixture(fixture_floor)))
      if (entry.path().extension() != ".json")
        fs::copy_file(entry.path(), folder / entry.path().filename());
    return folder;
  }
  // Checks that the folder holds native files equal to the fixture floor's
  // manifests, with the originals kept beside and nothing else left.
  void ExpectMigrated(const fs::path& folder, const std::string& fixture_floor) {
    for (const auto& entry : fs::directory_iterator(Fixture(fixture_floor))) {
      if (entry.path().extension() == ".json") continue;
      const std::string name = entry.path().filename().string();
      SCOPED_TRACE(name);
      EXPECT_EQ(ReadBytes(folder / (name + ".jet")), ReadBytes(entry.path()));
      auto database = dao::DBEngine::Instance()->OpenDatabase((folder / name).string());
      EXPECT_TRUE(database->Updatable());
      ExpectMatchesManifest(*database, entry.path().string() + ".json");
      database->Close();
    }
    for (const auto& entry : fs::directory_iterator(folder)) {
      const std::string name = entry.path().filename().string();
      EXPECT_TRUE(name.ends_with(".mdb") || name.ends_with(".MDB") || name.ends_with(".jet"))
          << name << " left behind";
    }
  }

  int floors_ = 0;
};

class EachFloor : public Migration, public ::testing::WithParamInterface<const char*> {};

TEST_P(EachFloor, MigratesEveryRowAndOpensForWork) {
  fs::path folder = Floor(GetParam());
  clsSeluVorneDataService floor;
  EXPECT_RAISES_THAT(floor.SetCurrKai(folder.string()), errc::kUnrecognizedFormat,
                     ::testing::HasSubstr("migrate"));

  legacy::MigrationReport report = legacy::MigrateFloor(folder.string());
  for (const legacy::FileReport& file : report.files) {
    EXPECT_TRUE(file.migrated) << file.file;
    for (const legacy::TableReport& table : file.tables) {
      const fs::path manifest = Fixture(std::string(GetParam()) + "/" + file.file + ".json");
      EXPECT_EQ(table.recorded, ManifestRows(manifest, table.table)) << table.table;
      EXPECT_EQ(table.read, table.recorded) << table.table;
      EXPECT_EQ(table.written, table.recorded) << table.table;
    }
  }
  ExpectMigrated(folder, GetParam());

  // Now a native floor: it opens for work, and an old floor gets the tables
  // it lacked.
  floor.SetCurrKai(folder.string());
  EXPECT_NO_THROW(floor.KutaiDb->TableDefs()->Item(std::string_view("SPANTOP")));
  auto rows = floor.KutaiDb->OpenRecordset("SELECT * FROM KUTAIDATA WHERE PAGE = 0;");
  rows->MoveLast();
  EXPECT_EQ(rows->RecordCount(), 160);
  floor.CloseDB();

  // A second run finds nothing left to migrate.
  report = legacy::MigrateFloor(folder.string());
  for (const legacy::FileReport& file : report.files)
    EXPECT_FALSE(file.migrated) << file.file;
}

INSTANTIATE_TEST_SUITE_P(Fixtures, EachFloor, ::testing::Values("floor-basic", "floor-old"));

// A floor with one file that cannot be read whole: nothing changes, not even
// the readable files, and the error names the file and the table.
TEST_F(Migration, AFloorWithABrokenFileIsLeftAsItWas) {
  const std::pair<const char*, const char*> broken[] = {
      {"broken/zeroed-page.mdb", "KUTAIDATA"},
      {"broken/truncated.mdb", "catalogue"},
  };
  for (const auto& [fixture, named] : broken) {
    SCOPED_TRACE(fixture);
    fs::path folder = Floor("floor-basic");
    fs::remove(folder / "SELUVORN.mdb");
    fs::copy_file(Fixture(fixture), folder / "SELUVORN.mdb");
    const auto before = Snapshot(folder);
    EXPECT_RAISES_THAT(
        legacy::MigrateFloor(folder.string()), errc::kUnrecognizedFormat,
        ::testing::AllOf(::testing::HasSubstr("SELUVORN.mdb"), ::testing::HasSubstr(named)));
    EXPECT_EQ(Snapshot(folder), before);
  }
}

TEST_F(Migration, SalvageMigratesWhatIsReadableAndReportsTheLoss) {
  fs::path folder = Floor("floor-empty");
  fs::remove(folder / "SELUVORN.mdb");
  fs::copy_file(Fixture("broken/zeroed-page.mdb"), folder / "SELUVORN.mdb");
  legacy::MigrationReport report = legacy::MigrateFloor(folder.string(), true);
  ASSERT_EQ(report.files.size(), 1u);
  std::map<std::string, legacy::TableReport> tables;
  for (const auto& table : report.files[0].tables)
    tables[table.table] = table;
  EXPECT_EQ(tables["KUTAIDATA"].recorded, 343);
  EXPECT_EQ(tables["KUTAIDATA"].written, 125);
  EXPECT_EQ(tables["ANKANIGE"].written, 1008);
  const std::string written = ReadBytes(report.report_file);
  EXPECT_NE(written.find("KUTAIDATA: recorded 343, read 125, written 125, LOST 218"),
            std::string::npos)
      << written;
  auto database = dao::DBEngine::Instance()->OpenDatabase((folder / "SELUVORN.mdb").string());
  auto rows = database->OpenRecordset("SELECT * FROM KUTAIDATA;");
  rows->MoveLast();
  EXPECT_EQ(rows->RecordCount(), 125);
  database->Close();
}

// Kills a migration of floor-basic after each of its file operations in turn;
// the next run must leave the floor migrated whole, as if never stopped.
TEST_F(Migration, KilledAtAnyStepTheNextRunFinishesIt) {
  int step = 1;
  for (;; ++step) {
    SCOPED_TRACE("killed after step " + std::to_string(step));
    fs::path folder = Floor("floor-basic");
    pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      ::setenv("SELUVORNE_MIGRATION_KILL_AFTER", std::to_string(step).c_str(), 1);
      try {
        legacy::MigrateFloor(folder.string());
      } catch (...) {
        ::_exit(2);
      }
      ::_exit(0);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    if (WIFEXITED(status)) {
      ASSERT_EQ(WEXITSTATUS(status), 0);
      ExpectMigrated(folder, "floor-basic");
      break;  // the run outlasted every step
    }
    ASSERT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);
    legacy::MigrateFloor(folder.string());
    ExpectMigrated(folder, "floor-basic");
  }
  EXPECT_GE(step, 10);  // three copies, the journal, six renames, its removal
}

}  // namespace
}  // namespace seluvorne::testing
