// Durability and sharing across processes: a writer killed mid-work, two
// processes on one file, a lock held past the busy timeout.

#include <SQLiteCpp/SQLiteCpp.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <set>

#include "db_fixture.h"

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
    saved_timeout_ = dao::DBEngine::Instance()->BusyTimeout();
  }
  void TearDown() override {
    dao::DBEngine::Instance()->SetBusyTimeout(saved_timeout_);
    DbTest::TearDown();
  }

  // Runs `work` in a child process; its result is the child's exit status.
  template <class F>
  pid_t Fork(F work) {
    pid_t child = ::fork();
    if (child == 0) {
      int status = 1;
      try {
        status = work();
      } catch (...) {
      }
      ::_exit(status);
    }
    return child;
  }
  static int ExitStatus(pid_t child) {
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

  // Adds rows of `page` until `count` are stored; true for each that was.
  std::int32_t WriteRows(std::int16_t page, std::int32_t count, int report = -1) {
    auto db = Open("SELUVORN.mdb");
    auto rs = db->OpenRecordset("KUTAIDATA", dao::dbOpenDynaset);
    std::int32_t stored = 0;
    for (std::int32_t i = 0; i < count; ++i) {
      rs->AddNew();
      rs->SetValue("PAGE", page);
      rs->SetValue("BANGOU", static_cast<std::int16_t>(i % 30000));
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

  std::string IntegrityCheck() {
    SQLite::Database sqlite(PathOf("SELUVORN.mdb"), SQLite::OPEN_READONLY);
    return sqlite.execAndGet("PRAGMA integrity_check").getString();
  }

  std::int32_t saved_timeout_ = 0;
};

TEST_F(ProcessTest, EveryRowWhoseUpdateReturnedSurvivesAKilledWriter) {
  int progress[2];
  ASSERT_EQ(::pipe(progress), 0);
  pid_t child = Fork([&] {
    ::close(progress[0]);
    WriteRows(1, 1000000, progress[1]);
    return 0;
  });
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
  auto rs = db->OpenRecordset("SELECT DATA FROM KUTAIDATA WHERE PAGE = 1;", dao::dbOpenSnapshot);
  std::set<std::string> stored;
  for (; !rs->IsEOF(); rs->MoveNext())
    stored.insert(vb::CStr(rs->Value("DATA")));
  for (std::int32_t i = 0; i <= last; ++i)
    ASSERT_TRUE(stored.contains("row " + std::to_string(i))) << "lost row " << i;
  EXPECT_EQ(CountRows(*db, "SELECT * FROM KUTAIDATA WHERE PAGE = 0;"), 500);
  db->Close();
  EXPECT_EQ(IntegrityCheck(), "ok");
}

TEST_F(ProcessTest, TwoProcessesReadAndWriteOneFile) {
  dao::DBEngine::Instance()->SetBusyTimeout(2000);
  // One reads while the other writes.
  pid_t writer = Fork([&] { return WriteRows(1, 2000) == 2000 ? 0 : 1; });
  auto db = Open("SELUVORN.mdb");
  int reads = 0, status = 0;
  while (::waitpid(writer, &status, WNOHANG) == 0) {
    EXPECT_EQ(CountRows(*db, "SELECT * FROM KUTAIDATA WHERE PAGE = 0;"), 500);
    ++reads;
  }
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
  EXPECT_GT(reads, 0);
  EXPECT_EQ(CountRows(*db, "SELECT * FROM KUTAIDATA WHERE PAGE = 1;"), 2000);

  // Both write at once: each row is stored, or refused with 3218 and absent.
  int result[2];
  ASSERT_EQ(::pipe(result), 0);
  pid_t other = Fork([&] {
    std::int32_t stored = WriteRows(2, 1500);
    return ::write(result[1], &stored, sizeof stored) == sizeof stored ? 0 : 1;
  });
  std::int32_t stored_here = WriteRows(3, 1500);
  std::int32_t stored_there = -1;
  ASSERT_EQ(::read(result[0], &stored_there, sizeof stored_there),
            static_cast<ssize_t>(sizeof stored_there));
  EXPECT_EQ(ExitStatus(other), 0);
  ::close(result[0]);
  ::close(result[1]);
  EXPECT_EQ(CountRows(*db, "SELECT * FROM KUTAIDATA WHERE PAGE = 2;"), stored_there);
  EXPECT_EQ(CountRows(*db, "SELECT * FROM KUTAIDATA WHERE PAGE = 3;"), stored_here);
  db->Close();
  EXPECT_EQ(IntegrityCheck(), "ok");
}

TEST_F(ProcessTest, ALockHeldPastTheBusyTimeoutRaises3218AndChangesNothing) {
  int locked[2], release[2];
  ASSERT_EQ(::pipe(locked), 0);
  ASSERT_EQ(::pipe(release), 0);
  pid_t holder = Fork([&] {
    SQLite::Database sqlite(PathOf("SELUVORN.mdb"), SQLite::OPEN_READWRITE);
    sqlite.exec("BEGIN IMMEDIATE");
    char signal = 1;
    if (::write(locked[1], &signal, 1) != 1) return 1;
    if (::read(release[0], &signal, 1) != 1) return 1;
    sqlite.exec("ROLLBACK");
    return 0;
  });
  char signal = 0;
  ASSERT_EQ(::read(locked[0], &signal, 1), 1);

  dao::DBEngine::Instance()->SetBusyTimeout(200);
  auto db = Open("SELUVORN.mdb");
  auto start = std::chrono::steady_clock::now();
  EXPECT_RAISES(AddRow(*db, "KUTAIDATA", 5, 0, 0, "blocked"), kLocked);
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(150));
  EXPECT_RAISES(db->Execute("DELETE * FROM KUTAIDATA ;", dao::dbFailOnError), kLocked);
  EXPECT_EQ(CountRows(*db, "SELECT * FROM KUTAIDATA;"), 500);  // reading is never blocked

  ASSERT_EQ(::write(release[1], &signal, 1), 1);
  EXPECT_EQ(ExitStatus(holder), 0);
  AddRow(*db, "KUTAIDATA", 5, 0, 0, "after");
  EXPECT_EQ(CountRows(*db, "SELECT * FROM KUTAIDATA;"), 501);
  for (int fd : {locked[0], locked[1], release[0], release[1]})
    ::close(fd);
}

}  // namespace
}  // namespace seluvorne::testing
