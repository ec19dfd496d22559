// Makes the library ready: registration of its components, the window layer,
// and the start routine. Each layer contributes as it comes into being.
//
// The start routine runs before the first object of the library is made:
// every class's factory registered here calls frame::EnsureStarted() first,
// so a host may register the outside components after StartLibrary().

#include "seluvorne/library.h"

#include <mutex>

#include "seluvorne/dao.h"
#include "seluvorne/frame.h"
#include "seluvorne/hari_fukasi_ds.h"
#include "seluvorne/hari_sw_ds.h"
#include "seluvorne/hiki_copy_ds.h"
#include "seluvorne/seluvorne_data_service.h"
#include "seluvorne/ui.h"

namespace seluvorne {

namespace {

std::once_flag started;

// A class of the library, created by name; its first creation runs the
// start routine.
template <class C>
void RegisterClass(std::string_view prog_id) {
  Register(prog_id, [] {
    frame::EnsureStarted();
    return Object(std::make_shared<C>());
  });
}

}  // namespace

void StartLibrary() {
  std::call_once(started, [] {
    // Creating the engine by name gives the one shared engine.
    for (const char* prog_id : {"DAO.DBEngine.36", "DAO.DBEngine"})
      Register(prog_id, [] { return Object(dao::DBEngine::Instance()); });
    RegisterClass<clsSeluVorneDataService>("SeluVorneDS.clsSeluVorneDataService");
    RegisterClass<clsHariFukasiDS>("SeluVorneDS.clsHariFukasiDS");
    RegisterClass<clsHariSWDS>("SeluVorneDS.clsHariSWDS");
    RegisterClass<clsHikiCopyDS>("SeluVorneDS.clsHikiCopyDS");
    frame::gForms = ui::CreateForms();
    frame::ScheduleStart();
  });
}

void RestartLibrary() {
  StartLibrary();
  frame::ScheduleStart();
}

Object DBEngine() {
  return dao::DBEngine::Instance();
}

}  // namespace seluvorne
