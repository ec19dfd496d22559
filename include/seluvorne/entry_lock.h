// The one lock every entry into the library takes.
//
// The library is one piece of shared state: a database file's connection and
// its caches, the registry, the library-wide globals. Hosts call it from any
// thread, so each entry (a call by name, a property, a method of the engine's
// objects, a file operation) holds this lock for its whole length. The lock
// is re-entrant: a component called back on the same thread (a Python
// component reached by name from inside the library) may call into the
// library again.
//
// Whoever holds another lock that a callback might need must let go of it
// before waiting here: the Python binding releases the GIL first, since a
// component written in Python takes the GIL while the library lock is held.
#pragma once

#include <mutex>

namespace seluvorne {

class EntryLock {
 public:
  EntryLock();
  EntryLock(const EntryLock&) = delete;
  EntryLock& operator=(const EntryLock&) = delete;

 private:
  std::lock_guard<std::recursive_mutex> guard_;
};

}  // namespace seluvorne
