// The library-wide globals. The objects behind the references are never
// destroyed: a component held here may belong to a host (a Python component)
// that is gone by the time static destructors run.

#include "seluvorne/frame.h"

namespace seluvorne::frame {

FloorDirs& gFloorDirs = *new FloorDirs;
ExistProbe& gExistProbe = *new ExistProbe;
std::int16_t gPageMax = 0;
std::int16_t gFukasiOnly = 0;
bool gFromBeamSolver = false;
std::string& gYobidasiMoto = *new std::string;
std::shared_ptr<Forms>& gForms = *new std::shared_ptr<Forms>;

void ReplaceSharedCollaborators() noexcept {
  // Each global keeps its old object when the new one cannot be made: a
  // destructor has no caller to report to, and the old service still works.
  try {
    gFloorDirs = FloorDirs::Create();
  } catch (...) {
  }
  try {
    gExistProbe = ExistProbe::Create();
  } catch (...) {
  }
}

}  // namespace seluvorne::frame
