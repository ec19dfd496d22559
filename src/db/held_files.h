// The engine's side of HeldFiles (include/seluvorne/held_files.h).
#pragma once

#include <memory>

namespace seluvorne::db {

class Connection;

// Keeps one more lease on `lease`'s connection while a HeldFiles lives;
// nothing otherwise. Called for every lease a handle takes.
void HoldWhileHeld(const std::shared_ptr<Connection>& lease);

}  // namespace seluvorne::db
