// Sharing across processes: a reader beside a writer, the lock that marks a
// file in use, a lock held past the busy timeout. (A killed writer is the
// crash tool's.)

#include <SQLiteCpp/SQLiteCpp.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <functional>

#include "db_fixture.h"
#include "seluvorne/integrity.h"

namespace seluvorne::testing {
namespace {

using namespace seluvorne::errc;

class ProcessTest : public DbTest {
 protected:
  void SetUp() override {
    DbTest::SetUp();
    auto db = Create("SELUVORN.mdb");
    AddFloorTable(*db, "KUTAIDATA");
    for (std::int16_t bangou = 0; bangou < 500; ++bangou)
      AddRow(*db, "KUTAIDATA", 0, 0, bangou, "page 0");
    db->Close();  // nothing of the file is open in this process when it forks
  }

  // Tries `count` rows of `page`; answers how many were stored.
  std::int32_t WriteRows(std::int16_t page, std::int32_t count) {
    auto db = Open("SELUVORN.mdb");
    auto rs = db->OpenRecordset("KUTAIDATA", dao::dbOpenDynaset);
    std::int32_t stored = 0;
    for (std::int32_t i = 0; i < count; ++i) {
      rs->AddNew();
      rs->SetValue("PAGE", page);
      rs->SetValue("DATA", "row " + std::to_string(i));
      try {
        rs->Update();
      } catch (const Error& error) {
        if (error.number != kLocked) throw;
        continue;  // another process held the lock past the timeout
      }
      ++stored;
    }
    return stored;
  }

  std::string IntegrityCheck() const { return AskSqlite("SELUVORN.mdb", "PRAGMA integrity_check"); }
};

// SQLite keeps a shared lock on a file in WAL mode while a connection has
// it: another process's last close checkpoints and deletes the log only when
// it can lock the file exclusively. Nothing that looks at a file this process
// has open (another open, its format, its integrity check) may drop that lock.
TEST_F(ProcessTest, LookingAtAFileAgainKeepsTheLockThatTellsOthersItIsInUse) {
  const std::string path = PathOf("SELUVORN.mdb");
  const std::vector<std::pair<const char*, std::function<void()>>> looks = {
      {"OpenForUpdate", [&] { dao::OpenForUpdate(path)->Close(); }},
      {"FormatOf", [&] { EXPECT_EQ(files::FormatOf(path), files::DatabaseFormat::kNative); }},
      {"IntegrityProblems",
       [&] { EXPECT_THAT(files::IntegrityProblems(path), ::testing::IsEmpty()); }},
  };
  for (const auto& [name, look] : looks) {
    SCOPED_TRACE(name);
    auto first = Open("SELUVORN.mdb");
    AddRow(*first, "KUTAIDATA", 1, 0, 0, "held");
    look();
    pid_t child = Fork([&] {
      int descriptor = ::open(path.c_str(), O_RDWR);
      struct flock lock {};
      lock.l_type = F_WRLCK;
      lock.l_whence = SEEK_SET;
      lock.l_start = 0x40000002;  // SQLite's shared range, after its pending and reserved bytes
      lock.l_len = 510;
      if (::fcntl(descriptor, F_GETLK, &lock) != 0) return 2;
      return lock.l_type == F_RDLCK ? 0 : 1;
    });
    EXPECT_EQ(ExitStatus(child), 0) << "the shared lock was dropped";
    first->Close();
  }
}

TEST_F(ProcessTest, TwoProcessesReadAndWriteOneFile) {
  dao::DBEngine::Instance()->SetBusyTimeout(2000);
  // One reads while the other writes.
  pid_t writer = Fork([&] { return WriteRows(1, 2000) == 2000 ? 0 : 1; });
  auto db = Open("SELUVORN.mdb");
  int status = 0, reads = 0;
  for (; ::waitpid(writer, &status, WNOHANG) == 0; ++reads)
    ASSERT_EQ(CountRows(*db, "SELECT * FROM KUTAIDATA WHERE PAGE = 0;"), 500);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
  EXPECT_GT(reads, 0);
  EXPECT_EQ(CountRows(*db, "SELECT * FROM KUTAIDATA WHERE PAGE = 1;"), 2000);

  db->Close();
  EXPECT_EQ(IntegrityCheck(), "ok");
}

TEST_F(ProcessTest, ALockHeldPastTheBusyTimeoutRaises3218AndChangesNothing) {
  SQLite::Database holder(PathOf("SELUVORN.mdb"), SQLite::OPEN_READWRITE);
  holder.exec("BEGIN IMMEDIATE");
  dao::DBEngine::Instance()->SetBusyTimeout(200);
  auto db = Open("SELUVORN.mdb");
  auto start = std::chrono::steady_clock::now();
  EXPECT_RAISES(AddRow(*db, "KUTAIDATA", 5, 0, 0, "blocked"), kLocked);
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(150));
  EXPECT_RAISES(db->Execute("DELETE * FROM KUTAIDATA ;", dao::dbFailOnError), kLocked);
  EXPECT_EQ(CountRows(*db, "SELECT * FROM KUTAIDATA;"), 500);  // reading is never blocked

  holder.exec("ROLLBACK");
  AddRow(*db, "KUTAIDATA", 5, 0, 0, "after");
  EXPECT_EQ(CountRows(*db, "SELECT * FROM KUTAIDATA;"), 501);
}

}  // namespace
}  // namespace seluvorne::testing
