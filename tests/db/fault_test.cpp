// Storage faults: every writing path of the engine, driven through a VFS
// that fails the disk under it, raises its number, never crashes, and loses
// nothing committed before the fault.

#include <SQLiteCpp/SQLiteCpp.h>

#include <functional>

#include "db_fixture.h"
#include "fault_vfs.h"
#include "seluvorne/files.h"

namespace seluvorne::testing {
namespace {

using namespace seluvorne::errc;

// Every database of this test program is opened through the shim, which
// passes everything through while disarmed.
const bool installed = (InstallFaultVfs(), true);

struct FaultCase {
  const char* path;  // the writing path, a key of Paths()
  Fault fault;
  int skip;  // calls that pass before the fault
  int error;
};

std::ostream& operator<<(std::ostream& out, const FaultCase& fault) {
  return out << fault.path << " fault " << static_cast<int>(fault.fault) << " after " << fault.skip;
}

class FaultTest : public PageTest, public ::testing::WithParamInterface<FaultCase> {
 protected:
  void TearDown() override {
    Disarm();
    dao::DBEngine::Instance()->SetBusyTimeout(5000);
    PageTest::TearDown();
  }

  // The writing paths, each on the open SELUVORN.mdb (six rows committed).
  std::function<void()> Path(std::string_view name) {
    if (name == "CreateDatabase") return [this] { Create("new.mdb"); };
    if (name == "TableDefs.Append") return [this] { AddFloorTable(*db, "EXTRA"); };
    if (name == "AddNew/Update") return [this] { AddRow(*db, "KUTAIDATA", 9, 0, 0, "new"); };
    if (name == "Execute")
      return
          [this] { db->Execute("DELETE * FROM KUTAIDATA WHERE PAGE = 3 ;", dao::dbFailOnError); };
    if (name == "CopyFile")
      return [this] { files::CopyFile(PathOf("SELUVORN.mdb"), PathOf("copy.mdb")); };
    if (name == "OpenDatabase")
      return [this] {
        db->Close();
        db = Open("SELUVORN.mdb");
        AddRow(*db, "KUTAIDATA", 9, 0, 0, "new");
      };
    ADD_FAILURE() << "no path " << name;
    return [] {};
  }
};

TEST_P(FaultTest, RaisesItsNumberAndLosesNothing) {
  const FaultCase& fault = GetParam();
  std::function<void()> path = Path(fault.path);
  dao::DBEngine::Instance()->SetBusyTimeout(0);
  Arm(fault.fault, fault.skip);
  EXPECT_RAISES(path(), fault.error);
  EXPECT_GT(FaultsInjected(), 0);
  Disarm();

  // Everything committed before is there, in a sound file; the file takes
  // writes again.
  db.reset();  // the handle, open or closed by the failing path
  db = Open("SELUVORN.mdb");
  EXPECT_EQ(CountRows(*db, "SELECT * FROM KUTAIDATA;"), 6);
  EXPECT_EQ(db->TableDefs()->Count(), 4);
  AddRow(*db, "KUTAIDATA", 10, 0, 0, "after");
  db->Close();
  EXPECT_EQ(AskSqlite("SELUVORN.mdb", "PRAGMA integrity_check"), "ok");
  EXPECT_EQ(AskSqlite("SELUVORN.mdb", "SELECT COUNT(*) FROM KUTAIDATA"), "7");
}

INSTANTIATE_TEST_SUITE_P(
    Faults, FaultTest,
    ::testing::Values(FaultCase{"CreateDatabase", Fault::kWriteError, 0, kDiskError},
                      FaultCase{"CreateDatabase", Fault::kDiskFull, 3, kDiskFull},
                      FaultCase{"CreateDatabase", Fault::kSyncError, 0, kDiskError},
                      FaultCase{"CreateDatabase", Fault::kOpenError, 0, kCannotOpenFile},
                      FaultCase{"CreateDatabase", Fault::kReadOnly, 0, kCannotOpenFile},
                      FaultCase{"TableDefs.Append", Fault::kWriteError, 0, kDiskError},
                      FaultCase{"TableDefs.Append", Fault::kDiskFull, 2, kDiskFull},
                      FaultCase{"TableDefs.Append", Fault::kLocked, 0, kLocked},
                      FaultCase{"AddNew/Update", Fault::kWriteError, 0, kDiskError},
                      FaultCase{"AddNew/Update", Fault::kDiskFull, 0, kDiskFull},
                      FaultCase{"AddNew/Update", Fault::kLocked, 0, kLocked},
                      FaultCase{"Execute", Fault::kWriteError, 1, kDiskError},
                      FaultCase{"Execute", Fault::kDiskFull, 0, kDiskFull},
                      FaultCase{"Execute", Fault::kLocked, 0, kLocked},
                      FaultCase{"CopyFile", Fault::kWriteError, 0, kDiskError},
                      FaultCase{"CopyFile", Fault::kDiskFull, 0, kDiskFull},
                      FaultCase{"CopyFile", Fault::kSyncError, 0, kDiskError},
                      FaultCase{"CopyFile", Fault::kOpenError, 0, kCannotOpenFile},
                      FaultCase{"OpenDatabase", Fault::kOpenError, 0, kCannotOpenFile},
                      FaultCase{"OpenDatabase", Fault::kReadOnly, 0, kCannotOpenFile}));

}  // namespace
}  // namespace seluvorne::testing
