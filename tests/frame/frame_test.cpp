// The library's start routine: once until rescheduled, again after a failure.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "error_matchers.h"
#include "fake_components.h"
#include "seluvorne/frame.h"

namespace {

using namespace seluvorne;
using namespace seluvorne::frame;
using seluvorne::fakes::FakeComponents;

TEST(StartUp, RunsOnceUntilRescheduledAndRetriesAfterAFailure) {
  ScheduleStart();
  FakeComponents folders({FloorDirs::kProgId, ExistProbe::kProgId});
  EXPECT_RAISES(EnsureStarted(), errc::kCannotCreateObject);  // no presets registered
  {
    FakeComponents presets({Presets::kProgId});
    EnsureStarted();
    EnsureStarted();
    EXPECT_EQ(presets.Created(Presets::kProgId), 1);
    EXPECT_EQ(folders.Created(FloorDirs::kProgId), 2);  // the failed run had made one

    gFromBeamSolver = true;
    gFukasiOnly = -1;
    gYobidasiMoto = "caller";
    ScheduleStart();  // a fresh library
    EXPECT_FALSE(gFloorDirs || gExistProbe || gPageMax || gFromBeamSolver || gFukasiOnly);
    EXPECT_EQ(gYobidasiMoto, "");
    EnsureStarted();
    EXPECT_EQ(presets.Created(Presets::kProgId), 2);
  }
  ScheduleStart();
}

}  // namespace
