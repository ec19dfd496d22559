// Legacy Jet files opened in place: every fixture reads back equal to its
// manifest, every write is refused, and whatever goes wrong in the reader
// helper (a broken file, a crash, a hang, a memory hog, a malformed stream)
// is 3343 for the file and never harms the host.

#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <fstream>

#include "error_matchers.h"
#include "file_bytes.h"
#include "legacy/jet_reader.h"
#include "manifest.h"
#include "seluvorne/dao.h"

namespace seluvorne::testing {
namespace {

namespace fs = std::filesystem;

std::shared_ptr<dao::Database> Open(const fs::path& path) {
  return dao::DBEngine::Instance()->OpenDatabase(path.string());
}

class LegacyOpen : public ::testing::TestWithParam<const char*> {};

TEST_P(LegacyOpen, ReadsEveryRowOfItsManifest) {
  auto database = Open(Fixture(GetParam()));
  EXPECT_FALSE(database->Updatable());
  ExpectMatchesManifest(*database, Fixture(std::string(GetParam()) + ".json"));
}

INSTANTIATE_TEST_SUITE_P(Fixtures, LegacyOpen,
                         ::testing::Values("floor-basic/SELUVORN.mdb", "floor-basic/HARIFUKA.mdb",
                                           "floor-basic/SeluVorneSW.MDB", "floor-old/SELUVORN.mdb",
                                           "floor-empty/SELUVORN.mdb"));

class LegacyFolder : public ::testing::Test {
 protected:
  void SetUp() override {
    folder_ = fs::path(::testing::TempDir()) /
              ("legacy_open_" + std::to_string(::getpid()) + "_" +
               ::testing::UnitTest::GetInstance()->current_test_info()->name());
    fs::remove_all(folder_);
    fs::create_directories(folder_);
    saved_limits_ = legacy::Limits();
  }
  void TearDown() override {
    legacy::Limits() = saved_limits_;
    ::unsetenv("SELUVORNE_JET_READER");
    fs::remove_all(folder_);
  }
  fs::path Copy(const std::string& fixture, const std::string& name) {
    fs::copy_file(Fixture(fixture), folder_ / name);
    return folder_ / name;
  }
  // A stand-in for the reader helper: a shell script.
  void FakeReader(const std::string& script) {
    fs::path program = folder_ / "fake-reader";
    std::ofstream(program) << "#!/bin/sh\n" << script << "\n";
    fs::permissions(program, fs::perms::owner_all);
    ::setenv("SELUVORNE_JET_READER", program.c_str(), 1);
  }

  fs::path folder_;
  legacy::ReaderLimits saved_limits_;
};

TEST_F(LegacyFolder, EveryWriteRaises3027AndChangesNothing) {
  auto database = Open(Copy("floor-basic/SeluVorneSW.MDB", "SeluVorneSW.MDB"));
  const std::pair<const char*, std::function<void()>> writes[] = {
      {"AddNew", [&] { database->OpenRecordset("SELUVORNESW")->AddNew(); }},
      {"DELETE", [&] { database->Execute("DELETE * FROM SELUVORNESW;"); }},
      {"UPDATE", [&] { database->Execute("UPDATE SELUVORNESW SET DATA = 'x';"); }},
      {"INSERT", [&] { database->Execute("INSERT INTO SELUVORNESW (PAGE) VALUES (9);"); }},
      {"CreateTableDef", [&] { database->CreateTableDef("NEW"); }},
  };
  for (const auto& [name, write] : writes) {
    SCOPED_TRACE(name);
    EXPECT_RAISES(write(), errc::kReadOnly);
  }
  auto rows = database->OpenRecordset("SELECT * FROM SELUVORNESW;");
  rows->MoveLast();
  EXPECT_EQ(rows->RecordCount(), 9);
}

// Each case: the file, or a fake reader, and what the error names.
struct Failure {
  const char* name;
  const char* fixture;  // opened with the real reader, when set
  const char* script;   // else this fake reader, on a good file
  const char* named;    // part of the description
};

class ReaderFailure : public LegacyFolder, public ::testing::WithParamInterface<Failure> {};

TEST_P(ReaderFailure, Raises3343AndTheHostCarriesOn) {
  const Failure& failure = GetParam();
  legacy::Limits().time = std::chrono::milliseconds(1500);
  legacy::Limits().memory_bytes = 256ull << 20;
  legacy::Limits().output_bytes = 1 << 20;
  fs::path file = Copy(failure.fixture ? failure.fixture : "floor-basic/SeluVorneSW.MDB", "X.mdb");
  if (!failure.fixture) FakeReader(failure.script);
  const std::string before = ReadBytes(file);

  auto started = std::chrono::steady_clock::now();
  EXPECT_RAISES_THAT(
      Open(file), errc::kUnrecognizedFormat,
      ::testing::AllOf(::testing::HasSubstr("X.mdb"), ::testing::HasSubstr(failure.named)));
  EXPECT_LT(std::chrono::steady_clock::now() - started, std::chrono::seconds(5));
  EXPECT_EQ(ReadBytes(file), before);
  EXPECT_EQ(std::distance(fs::directory_iterator(folder_), {}), failure.fixture ? 1 : 2);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ReaderFailure,
    ::testing::Values(
        Failure{"Truncated", "broken/truncated.mdb", nullptr, "catalogue"},
        Failure{"ZeroedPage", "broken/zeroed-page.mdb", nullptr, "KUTAIDATA records 343 rows"},
        Failure{"Crash", nullptr, "kill -SEGV $$", "signal 11"},
        Failure{"Hang", nullptr, "exec sleep 30", "longer than 1500 ms"},
        Failure{"HangWithChild", nullptr, "sleep 30 & wait", "longer than 1500 ms"},
        Failure{"MemoryHog", nullptr, "exec dd if=/dev/zero of=/dev/null bs=512M count=1",
                "memory exhausted"},
        Failure{"EndlessOutput", nullptr, "exec yes", "more than the limit"},
        Failure{"NoEnd", nullptr, "printf 'H 1 4 1252\\nT 1:A 0 1\\nF 1:P 3 2 - 0\\nE 0\\n'",
                "cut off"},
        Failure{"BadRow", nullptr,
                "printf 'H 1 4 1252\\nT 1:A 1 1\\nF 1:P 3 2 - 0\\nR 2:x1\\nE 1\\nZ\\n'",
                "no number"},
        Failure{"FailsAfterStream", nullptr, "printf 'H 1 4 1252\\nZ\\n'; exit 3",
                "failed after a complete stream"},
        Failure{"ExecFails", nullptr, "exec /nonexistent/reader \"$1\"", "cut off"}),
    [](const ::testing::TestParamInfo<Failure>& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace seluvorne::testing
