// The library as a host starts it: standalone components, the window layer,
// and the start routine before the first use.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "error_matchers.h"
#include "fake_components.h"
#include "seluvorne/components.h"
#include "seluvorne/frame.h"
#include "seluvorne/library.h"

namespace {

using namespace seluvorne;
namespace fs = std::filesystem;

TEST(Library, StartsWithStandaloneComponentsAndShowsTheConfirmationForm) {
  char pattern[] = "/tmp/seluvorne-library-XXXXXX";
  const fs::path root = mkdtemp(pattern);
  std::ofstream(root / "presets.json") << R"({"KutaiMaxPage": "1"})";
  setenv("SELUVORNE_SETTINGS", (root / "no-settings.json").c_str(), 1);

  StartLibrary();
  EXPECT_EQ(frame::gPageMax, 0);  // armed, not run: components may come later
  RegisterStandaloneComponents(root.string());
  frame::EnsureStarted();
  EXPECT_EQ(frame::gPageMax, frame::kLargePageMax);
  EXPECT_EQ(frame::gFloorDirs.DataPath(), root.string());

  frame::gFukasiOnly = -1;
  frame::ShowCalcTargetMessage(0);  // the Qt form, offscreen
  frame::DoEvents();
  frame::gForms->UnloadKakunin();

  RestartLibrary();
  EXPECT_EQ(frame::gFukasiOnly, 0);
  EXPECT_FALSE(frame::gFloorDirs);
  frame::EnsureStarted();
  EXPECT_TRUE(frame::gFloorDirs);

  for (std::string_view id : fakes::OutsideComponentIds())
    Unregister(id);
  unsetenv("SELUVORNE_SETTINGS");
  fs::remove_all(root);
}

// Each class of the library is created by name, and its creation runs the
// start routine first.
class ClassByName : public ::testing::TestWithParam<const char*> {};

TEST_P(ClassByName, CreationRunsTheStartRoutine) {
  fakes::FakeComponents fakes;
  StartLibrary();
  frame::ScheduleStart();
  Object object = CreateObject(std::string("SeluVorneDS.") + GetParam());
  EXPECT_EQ(object->className(), GetParam());
  EXPECT_EQ(fakes.Created(frame::Presets::kProgId), 1);
  EXPECT_TRUE(frame::gFloorDirs);
  object.reset();
  frame::ScheduleStart();
}

INSTANTIATE_TEST_SUITE_P(Classes, ClassByName,
                         ::testing::Values("clsSeluVorneDataService", "clsHariFukasiDS",
                                           "clsHariSWDS", "clsHikiCopyDS"));

}  // namespace
