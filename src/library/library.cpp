// Makes the library ready: registration of its components and the start
// routine. Each layer contributes as it comes into being.

#include "seluvorne/library.h"

#include <mutex>

#include "seluvorne/dao.h"

namespace seluvorne {

namespace {
std::once_flag started;
}  // namespace

void StartLibrary() {
  std::call_once(started, [] {
    // Creating the engine by name gives the one shared engine.
    for (const char* prog_id : {"DAO.DBEngine.36", "DAO.DBEngine"})
      Register(prog_id, [] { return Object(dao::DBEngine::Instance()); });
  });
}

void RestartLibrary() {
  StartLibrary();
}

Object DBEngine() {
  return dao::DBEngine::Instance();
}

}  // namespace seluvorne
