// Durability and sharing across processes: a writer killed mid-work, two
// processes on one file, a lock held past the busy timeout.

#include <SQLiteCpp/SQLiteCpp.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <functional>
#include <set>

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

  // Tries `count` rows of `page`; answers how many were stored. Each row
  // stored is reported on `report`, when given.
  std::int32_t WriteRows(std::int16_t page, std::int32_t count, int report = -1) {
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
      if (report >= 0 && ::write(report, &i, sizeof i) != sizeof i) return stored;
    }
    return stored;
  }

  std::string IntegrityCheck() const { return AskSqlite("SELUVORN.mdb", "PRAGMA integrity_check"); }
};

TEST_F(ProcessTest, EveryRowWhoseUpdateReturnedSurvivesAKilledWriter) {
  int progress[2];
  ASSERT_EQ(::pipe(progress), 0);
  pid_t child = Fork([&] { return WriteRows(1, 1000000, progress[1]); });
  ::close(progress[1]);
  std::int32_t last = -1, reported = 0;
  while (last < 3000 && ::read(progress[0], &reported, sizeof reported) == sizeof reported)
    last = reported;
  ::kill(child, SIGKILL);
  ExitStatus(child);
  while (::read(progress[0], &reported, sizeof reported) == sizeof reported)
    last = reported;
  ::close(progress[0]);
  ASSERT_GE(last, 3000);

  auto db = Open("SELUVORN.mdb");
  std::set<std::string> stored;
  auto rs = db->OpenRecordset("SELECT DATA FROM KUTAIDATA WHERE PAGE = 1;", dao::dbOpenSnapshot);
  for (; !rs->IsEOF(); rs->MoveNext())
    stored.insert(vb::CStr(rs->Value("DATA")));
  for (std::int32_t i = 0; i <= last; ++i)
    ASSERT_TRUE(stored.contains("row " + std::to_string(i))) << "lost row " << i;
  EXPECT_EQ(CountRows(*db, "SELECT * FROM KUTAIDATA WHERE PAGE = 0;"), 500);
  db->Close();
  EXPECT_EQ(IntegrityCheck(), "ok");
}

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

  // Both write at once: each row waits and is stored, or is refused with 3218 and absent.
  int reports[2];
  ASSERT_EQ(::pipe(reports), 0);
  pid_t other = Fork([&] { return WriteRows(2, 1500, reports[1]) >= 0 ? 0 : 1; });
  ::close(reports[1]);
  std::int32_t stored_here = WriteRows(3, 1500), stored_there = 0, row = 0;
  while (::read(reports[0], &row, sizeof row) == sizeof row)
    ++stored_there;
  ::close(reports[0]);
  EXPECT_EQ(ExitStatus(other), 0);
  EXPECT_EQ(CountRows(*db, "SELECT * FROM KUTAIDATA WHERE PAGE = 2;"), stored_there);
  EXPECT_EQ(CountRows(*db, "SELECT * FROM KUTAIDATA WHERE PAGE = 3;"), stored_here);
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
