// The library as a host starts it: standalone components, the window layer,
// and the start routine before the first use.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

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
  EXPECT_EQ(frame::gPageMax, frame::kLargePageMax);  // through the real presets

  frame::ShowCalcTargetMessage(0);  // the Qt form, offscreen
  frame::gForms->UnloadKakunin();

  RestartLibrary();
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
TEST(Library, CreatesItsClassesByNameAfterTheStartRoutine) {
  fakes::FakeComponents fakes;
  StartLibrary();
  int starts = 0;
  for (const char* name :
       {"clsSeluVorneDataService", "clsHariFukasiDS", "clsHariSWDS", "clsHikiCopyDS"}) {
    frame::ScheduleStart();
    EXPECT_EQ(CreateObject(std::string("SeluVorneDS.") + name)->className(), name);
    EXPECT_EQ(fakes.Created(frame::Presets::kProgId), ++starts) << name;
    EXPECT_TRUE(frame::gFloorDirs) << name;
  }
  frame::ScheduleStart();
}

}  // namespace
