// Leases kept on the files opened while a HeldFiles lives.

#include "held_files.h"

#include <mutex>
#include <vector>

#include "seluvorne/held_files.h"

namespace seluvorne::db {

namespace {

struct Holding {
  int scopes = 0;
  std::vector<std::shared_ptr<Connection>> leases;  // one per connection
};

std::mutex holding_mutex;

Holding& TheHolding() {
  static Holding* holding = new Holding;  // never destroyed: a scope may outlive main
  return *holding;
}

}  // namespace

void HoldWhileHeld(const std::shared_ptr<Connection>& lease) {
  std::lock_guard lock(holding_mutex);
  Holding& holding = TheHolding();
  if (holding.scopes == 0) return;
  for (const auto& held : holding.leases)
    if (held.get() == lease.get()) return;
  holding.leases.push_back(lease);
}

}  // namespace seluvorne::db

namespace seluvorne::dao {

HeldFiles::HeldFiles() {
  std::lock_guard lock(db::holding_mutex);
  ++db::TheHolding().scopes;
}

HeldFiles::~HeldFiles() {
  std::vector<std::shared_ptr<db::Connection>> released;
  {
    std::lock_guard lock(db::holding_mutex);
    db::Holding& holding = db::TheHolding();
    if (--holding.scopes == 0) released.swap(holding.leases);
  }
  // Outside the lock: the last lease of a file closes its connection.
}

}  // namespace seluvorne::dao
