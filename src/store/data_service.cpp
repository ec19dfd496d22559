// clsSeluVorneDataService: its lifetime, its current floor, the stores it
// holds and the library-wide settings it exposes.

#include "seluvorne/frame.h"
#include "seluvorne/seluvorne_data_service.h"

namespace seluvorne {

clsSeluVorneDataService::clsSeluVorneDataService() : roster_(frame::BeamRoster::Create()) {}

clsSeluVorneDataService::~clsSeluVorneDataService() {
  roster_ = frame::BeamRoster();
  copy_merge_bar_ = frame::Progress();
  frame::ReplaceSharedCollaborators();
}

void clsSeluVorneDataService::SetCurrKai(const std::string& KaiPath) {
  OpenSeluVorne(KaiPath, KutaiDb);
  curr_kai_ = KaiPath;
}

clsHariSWDS& clsSeluVorneDataService::SwitchStore() {
  if (!SwStore) SwStore = std::make_shared<clsHariSWDS>();
  return *SwStore;
}

clsHariFukasiDS& clsSeluVorneDataService::BuildOutStore() {
  if (!FukasiStore) FukasiStore = std::make_shared<clsHariFukasiDS>();
  return *FukasiStore;
}

// ---- The library-wide settings -------------------------------------------------

std::int16_t clsSeluVorneDataService::PageMax() const {
  return frame::gPageMax;
}

bool clsSeluVorneDataService::FromBeamSolver() const {
  return frame::gFromBeamSolver;
}

void clsSeluVorneDataService::SetFromBeamSolver(bool value) {
  frame::gFromBeamSolver = value;
}

void clsSeluVorneDataService::SetHontaiOrFukasi(std::int16_t value) {
  frame::gFukasiOnly = value;
}

void clsSeluVorneDataService::SetYobidasiMoto(const std::string& value) {
  frame::gYobidasiMoto = value;
}

void clsSeluVorneDataService::SetCopyMergeBar(const Object& progress) {
  copy_merge_bar_ = frame::Progress(progress);
}

}  // namespace seluvorne
