#include "seluvorne/entry_lock.h"

namespace seluvorne::detail {

constinit std::atomic<int> library_lock{0};
constinit thread_local int library_entries = 0;

// The lock is another thread's: mark it contended and sleep until it is
// given back.
void WaitForLibrary(int seen) {
  if (seen != 2) seen = library_lock.exchange(2, std::memory_order_acquire);
  while (seen != 0) {
    library_lock.wait(2, std::memory_order_relaxed);
    seen = library_lock.exchange(2, std::memory_order_acquire);
  }
}

void WakeLibraryWaiter() {
  library_lock.notify_one();
}

}  // namespace seluvorne::detail
