// The standalone components, reached by name as any host reaches them,
// through the frame's typed facades.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "error_matchers.h"
#include "fake_components.h"
#include "file_bytes.h"
#include "seluvorne/components.h"
#include "seluvorne/display.h"
#include "seluvorne/frame.h"
#include "seluvorne/member_table.h"
#include "ui/application.h"

namespace {

using namespace seluvorne;
using namespace seluvorne::frame;
namespace fs = std::filesystem;
using seluvorne::testing::ReadBytes;
using seluvorne::testing::WriteBytes;
using vb::Variant;

// A scratch data root, registered; no settings file and no SELUVORNE_DATA.
class ComponentsTest : public ::testing::Test {
 protected:
  void SetUp() override {
    char pattern[] = "/tmp/seluvorne-components-XXXXXX";
    base_ = mkdtemp(pattern);
    root_ = (base_ / "data").string();
    fs::create_directories(root_);
    settings_ = base_ / "settings.json";
    setenv("SELUVORNE_SETTINGS", settings_.c_str(), 1);
    unsetenv("SELUVORNE_DATA");
    RegisterStandaloneComponents(root_);
  }
  void TearDown() override {
    for (std::string_view id : fakes::OutsideComponentIds())
      Unregister(id);
    Unregister(kFloorCompanionProgId);
    unsetenv("SELUVORNE_SETTINGS");
    unsetenv("SELUVORNE_DATA");
    fs::remove_all(base_);
  }

  // The through-bar file, as an interface text and as a native path.
  std::string Bars() const { return root_ + "\\Hollenbar.Dat"; }
  fs::path NativeBars() const { return base_ / "data/Hollenbar.Dat"; }
  void Put(std::int16_t page, bool value) const {
    ThroughBars::Create().SetPathPutHikiToosiSW(Bars(), page, value);
  }
  bool Get(std::int16_t page) const {
    return ThroughBars::Create().SetPathGetHikiToosiSW(Bars(), page);
  }

  fs::path base_;
  std::string root_;  // native text; interface texts append backslashed parts to it
  fs::path settings_;
};

TEST_F(ComponentsTest, DataRootIsTheArgumentThenTheEnvironmentThenTheSettings) {
  auto data_path = [] { return FloorDirs::Create().DataPath(); };
  EXPECT_EQ(data_path(), root_);
  EXPECT_RAISES(RegisterStandaloneComponents(), errc::kInvalidCall);  // none of the three
  WriteBytes(settings_, R"({"dataRoot": "/from/settings/"})");
  RegisterStandaloneComponents();
  EXPECT_EQ(data_path(), "/from/settings");
  setenv("SELUVORNE_DATA", "/from/environment", 1);
  RegisterStandaloneComponents();
  EXPECT_EQ(data_path(), "/from/environment");
  RegisterStandaloneComponents("D:\\given\\");
  EXPECT_EQ(data_path(), "D:\\given");
}

// ---- Floor folders and the file probe ----------------------------------------

// ---- Presets and the beam roster ---------------------------------------------

// ---- The through-bar file ----------------------------------------------------

TEST_F(ComponentsTest, ThroughBarsRoundTripInPageOrderAndMissingPagesAnswerFalse) {
  EXPECT_FALSE(Get(0));  // no file yet
  Put(7, true);
  Put(2, true);
  Put(499, true);
  Put(2, false);
  EXPECT_TRUE(Get(7) && Get(499));
  EXPECT_FALSE(Get(2) || Get(3));
  EXPECT_EQ(ReadBytes(NativeBars()), "HOLLENBAR 1\n2 0\n7 -1\n499 -1\nEND\n");
  EXPECT_EQ(std::distance(fs::directory_iterator(root_), {}), 1);  // no temporary file left
}

// A writer killed at any moment leaves the file as it was after some whole
// number of writes. The child sets pages 0..49 to true in order, then to false,
// and so on; so every state it can leave is "pages below r hold one value, the
// rest the other" (Get raises on a torn file). Stray temporary files are allowed.
TEST_F(ComponentsTest, ThroughBarsWriterKilledMidWriteLeavesTheOldOrTheNewFile) {
  constexpr int kPages = 50;
  for (int round = 0; round < 12; ++round) {
    fs::remove(NativeBars());
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0)
      for (int i = 0;; ++i)
        Put(static_cast<std::int16_t>(i % kPages), (i / kPages) % 2 == 0);
    usleep(2000 + ::random() % 30000);
    kill(child, SIGKILL);
    int status = 0;
    waitpid(child, &status, 0);
    ASSERT_TRUE(WIFSIGNALED(status));
    int changes = 0;
    for (std::int16_t page = 1; page < kPages; ++page)
      changes += Get(page) != Get(static_cast<std::int16_t>(page - 1));
    EXPECT_LE(changes, 1) << "round " << round;
  }
}

}  // namespace
