// Makes the library ready: registration of its components and the start
// routine. Each layer contributes as it comes into being.

#include "seluvorne/library.h"

#include <mutex>

namespace seluvorne {

namespace {
std::once_flag started;
}  // namespace

void StartLibrary() {
  std::call_once(started, [] {});
}

void RestartLibrary() {
  StartLibrary();
}

Object DBEngine() {
  Raise(errc::kCannotCreateObject, "(DAO.DBEngine)");
}

}  // namespace seluvorne
