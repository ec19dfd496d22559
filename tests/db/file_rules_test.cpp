// Files under several processes: in-use marks another process's deletion
// and copy respect, creation that is whole or absent, and the journal a file
// gets on a network share.

#include <SQLiteCpp/SQLiteCpp.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <functional>
#include <thread>

#include "db_fixture.h"
#include "file_lock.h"
#include "file_system.h"
#include "seluvorne/files.h"

namespace seluvorne::testing {
namespace {

using namespace seluvorne::errc;
namespace fs = std::filesystem;

class FileRulesTest : public DbTest {
 protected:
  void TearDown() override {
    db::SetFileSystemTypeProbe({});
    DbTest::TearDown();
  }

  // A child process that opens `file` through the library, says so on a
  // pipe, and keeps it open until the parent closes its end.
  struct Holder {
    pid_t pid;
    int release;
  };
  Holder HoldInChild(const std::string& file) {
    int opened[2], release[2];
    EXPECT_EQ(::pipe(opened), 0);
    EXPECT_EQ(::pipe(release), 0);
    pid_t pid = Fork([&] {
      ::close(opened[0]);
      ::close(release[1]);
      auto db = Open(file);
      char ready = 'y';
      const bool held = ::write(opened[1], &ready, 1) == 1 && ::read(release[0], &ready, 1) >= 0;
      db->Close();
      return held ? 0 : 1;
    });
    ::close(opened[1]);
    ::close(release[0]);
    char ready = 0;
    EXPECT_EQ(::read(opened[0], &ready, 1), 1);
    ::close(opened[0]);
    return {pid, release[1]};
  }
  static int Release(Holder holder) {
    ::close(holder.release);
    return ExitStatus(holder.pid);
  }

  std::string JournalMode(const std::string& file) const {
    return AskSqlite(file, "PRAGMA journal_mode");
  }
};

TEST_F(FileRulesTest, AFileOpenInAnotherProcessCannotBeDeletedOrReplaced) {
  Create("held.mdb")->Close();
  Create("other.mdb")->Close();
  Holder holder = HoldInChild("held.mdb");
  const std::pair<const char*, std::function<void()>> attempts[] = {
      {"DeleteFile", [&] { files::DeleteFile(PathOf("held.mdb")); }},
      {"CopyFile onto it", [&] { files::CopyFile(PathOf("other.mdb"), PathOf("held.mdb")); }},
  };
  for (const auto& [what, attempt] : attempts) {
    SCOPED_TRACE(what);
    EXPECT_RAISES(attempt(), kPermissionDenied);
  }
  // Opening it here as well is no conflict; only removal is.
  Open("held.mdb")->Close();
  EXPECT_EQ(Release(holder), 0);
  files::DeleteFile(PathOf("held.mdb"));
  EXPECT_FALSE(fs::exists(PathOf("held.mdb")));
}

// A copy marks its source in use while it reads it, as a handle does: a
// deletion under way (which holds the file's exclusive mark) is waited for,
// and a source that is gone then is not copied.
TEST_F(FileRulesTest, ACopyWaitsForADeletionOfItsSourceAndCopiesNothingGone) {
  Create("source.mdb")->Close();
  db::FileLock deletion(PathOf("source.mdb"));
  ASSERT_TRUE(deletion.TryExclusive());
  std::thread deleter([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    fs::remove(PathOf("source.mdb"));
    deletion = db::FileLock();
  });
  EXPECT_RAISES(files::CopyFile(PathOf("source.mdb"), PathOf("copy.mdb")), kFileNotFound);
  deleter.join();
  EXPECT_FALSE(fs::exists(PathOf("copy.mdb")));
}

TEST_F(FileRulesTest, WhatAKilledCreationOrCopyOrAnOldFileLeftDoesNotBlockOrLeak) {
  auto source = Create("source.mdb");
  AddFloorTable(*source, "KUTAIDATA");
  AddRow(*source, "KUTAIDATA", 1, 0, 0, "kept");
  source->Close();
  const std::vector<std::pair<std::string, std::function<void()>>> writers = {
      {".creating-",
       [&] {
         auto db = Create("SELUVORN.mdb");
         AddFloorTable(*db, "KUTAIDATA");
         AddRow(*db, "KUTAIDATA", 1, 0, 0, "kept");
         db->Close();
       }},
      {".copying-", [&] { files::CopyFile(PathOf("source.mdb"), PathOf("SELUVORN.mdb")); }},
  };
  for (const auto& [mark, write] : writers) {
    SCOPED_TRACE(mark);
    fs::remove(PathOf("SELUVORN.mdb"));
    // A writer killed midway left its temporary file, another one is at work
    // on its own (made just now), and an old file left its log.
    const std::string abandoned = PathOf("SELUVORN.mdb" + mark + "99999-1");
    const std::string recent = PathOf("SELUVORN.mdb" + mark + "99999-2");
    std::ofstream(abandoned) << "half made";
    std::ofstream(recent) << "being made";
    fs::last_write_time(abandoned, fs::file_time_type::clock::now() - std::chrono::hours(1));
    std::ofstream(PathOf("SELUVORN.mdb-wal")) << std::string(4096, 'w');
    write();
    EXPECT_FALSE(fs::exists(abandoned));
    EXPECT_TRUE(fs::exists(recent));
    fs::remove(recent);
    auto rs = Open("SELUVORN.mdb")->OpenRecordset("KUTAIDATA", dao::dbOpenTable);
    EXPECT_EQ(rs->Value("DATA"), vb::Variant(std::string("kept")));
    rs->Close();
  }
}

// statfs types: network file systems get the rollback journal, whatever the
// file had; local ones WAL.
TEST_F(FileRulesTest, OnANetworkShareAFileUsesTheRollbackJournal) {
  const std::pair<long, const char*> types[] = {{0x6969, "delete"},     {0xFF534D42, "delete"},
                                                {0xFE534D42, "delete"}, {0x01021997, "delete"},
                                                {0xEF53, "wal"},        {0x01021994, "wal"}};
  Create("old.mdb")->Close();  // made where the folder really is: WAL
  int n = 0;
  for (auto [type, mode] : types) {
    SCOPED_TRACE(type);
    db::SetFileSystemTypeProbe([type](const fs::path&) { return type; });
    const std::string file = "f" + std::to_string(n++) + ".mdb";
    auto db = Create(file);
    AddFloorTable(*db, "KUTAIDATA");
    AddRow(*db, "KUTAIDATA", 1, 0, 0, "x");
    EXPECT_EQ(JournalMode(file), mode);
    EXPECT_EQ(fs::exists(PathOf(file + "-wal")), std::string(mode) == "wal");
    db->Close();
    Open("old.mdb")->Close();
    EXPECT_EQ(JournalMode("old.mdb"), mode);
  }
}

}  // namespace
}  // namespace seluvorne::testing
