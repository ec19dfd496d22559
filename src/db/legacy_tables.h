// A legacy Jet file's tables and rows (as the reader helper streams them)
// written into a database of ours: the same tables, fields, defaults,
// allow-zero-length flags and rows, Null kept apart from "".
#pragma once

#include "connection.h"
#include "legacy/jet_stream.h"

namespace seluvorne::db {

// Appends every table of `file` to the (new, empty) database and adds its
// rows in one transaction. Raises 3125 or 3259 for a name or field the
// engine cannot hold, and the engine's errors for a failed write.
void CopyJetTables(Connection& connection, const legacy::JetFile& file);

}  // namespace seluvorne::db
