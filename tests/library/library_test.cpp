// The library as a host starts it: its classes created by name after the
// start routine.

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
