// The start routine and the page limit.

#include "seluvorne/frame.h"
#include "seluvorne/runtime.h"

namespace seluvorne::frame {

namespace {
bool started = false;
}  // namespace

void Main() {
  gFloorDirs = FloorDirs::Create();
  gExistProbe = ExistProbe::Create();
  LoadPageMax();
}

void LoadPageMax() {
  // A fresh presets object per reading, released at the end, so that a changed
  // preset counts at the next reading.
  const Presets presets = Presets::Create();
  const std::string text = presets.GetHariDefault(std::string(kPageMaxPreset));
  gPageMax = vb::CInt(vb::Val(text)) != 0 ? kLargePageMax : kSmallPageMax;
}

void ScheduleStart() {
  gFloorDirs = FloorDirs();
  gExistProbe = ExistProbe();
  gPageMax = 0;
  gFukasiOnly = 0;
  gFromBeamSolver = false;
  gYobidasiMoto.clear();
  started = false;
}

void EnsureStarted() {
  if (started) return;
  Main();
  started = true;
}

}  // namespace seluvorne::frame
