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

#include <sys/single_threaded.h>

#include <atomic>

namespace seluvorne {

namespace detail {

// A reader of a page enters the library ten times a row, so the lock is a
// futex word taken inline rather than a recursive pthread mutex:
// re-entering on the owning thread touches only that thread's count, taking
// it free is one compare-and-swap, and while the process has one thread (as
// most hosts have) taking and giving it back are plain stores, as glibc's
// own locks do then. A process only ever goes from one thread to several,
// and starting a thread publishes every store made before it, so a lock
// taken with a plain store is rightly given back with an exchange.
// 0: free; 1: held; 2: held, and someone may be waiting.
//
// Both live in libseluvorne alone (entry_lock.cpp), not as inline variables:
// a module loaded privately beside it (a Python extension, a plugin) would
// otherwise carry a lock of its own, and two locks guard nothing. The count
// is in the initial-exec TLS model, so that reaching it from the hot path is
// one load, not a call.
extern std::atomic<int> library_lock;
extern thread_local int library_entries
    __attribute__((tls_model("initial-exec")));  // this thread's, now open

void WaitForLibrary(int seen);  // sleeps until this thread has the lock
void WakeLibraryWaiter();

}  // namespace detail

class EntryLock {
 public:
  EntryLock() {
    using detail::library_lock;
    if (detail::library_entries++ > 0) return;
    int seen = 0;
    if (__libc_single_threaded)
      library_lock.store(1, std::memory_order_relaxed);
    else if (!library_lock.compare_exchange_strong(seen, 1, std::memory_order_acquire))
      detail::WaitForLibrary(seen);
  }
  ~EntryLock() {
    using detail::library_lock;
    if (--detail::library_entries > 0) return;
    if (__libc_single_threaded)
      library_lock.store(0, std::memory_order_relaxed);
    else if (library_lock.exchange(0, std::memory_order_release) == 2)
      detail::WakeLibraryWaiter();
  }
  EntryLock(const EntryLock&) = delete;
  EntryLock& operator=(const EntryLock&) = delete;
};

}  // namespace seluvorne
