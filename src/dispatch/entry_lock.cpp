#include "seluvorne/entry_lock.h"

namespace seluvorne {

namespace {

std::recursive_mutex& LibraryMutex() {
  static auto* mutex = new std::recursive_mutex;  // never destroyed: threads may outlive main
  return *mutex;
}

}  // namespace

EntryLock::EntryLock() : guard_(LibraryMutex()) {}

}  // namespace seluvorne
