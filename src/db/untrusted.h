// Every database file is one anybody may have edited with a generic SQLite
// tool: the settings under which the engine opens it, and the schema objects
// it did not make.
//
// A connection runs with SQLite's settings for files of unknown origin:
// defensive mode (no writes to the schema table, no shadow-table writes),
// an untrusted schema (functions with side effects never run from it),
// triggers and views switched off (the engine makes neither, so one found in
// a file never acts), no extension loading, and limits that no floor comes
// near, so a hostile file costs a bounded amount of memory and time.
//
// Objects of the file that the catalogue does not account for are foreign.
// Most are inert under these settings and only reported (`seluvorne check`);
// those that would act on the engine's tables (a table whose definition
// differs from the catalogue's, a virtual table or view in a table's place,
// a unique, partial or expression index on one) make the file refused with
// 3343, naming the object and how to remove it.
#pragma once

#include <sqlite3.h>

#include <cstddef>
#include <string>
#include <vector>

namespace seluvorne::db {

class Catalogue;

// The limits. A field holds at most 255 characters (1,020 bytes), a table at
// most 255 fields, as in the original engine.
inline constexpr int kMaxValueBytes = 1 << 20;  // a text or a whole row
inline constexpr int kMaxColumns = 255;         // per table, result or index
inline constexpr int kMaxStatementBytes = 1 << 20;
inline constexpr int kMaxExpressionDepth = 500;
// Values one read may hold in memory (16 bytes each): the largest whole-table
// read of a full floor is about a million.
inline constexpr std::size_t kMaxValuesPerRead = std::size_t{1} << 24;
inline constexpr std::size_t kMaxTextBytesPerRead = std::size_t{1} << 28;

// Applies the settings above to a connection before its first statement.
// An inspecting connection (check, clean) keeps SQLite's column and attached
// database limits, so that it can read a schema the engine's limit refuses,
// name what is wrong, and keep a copy of the file.
void DistrustSchema(sqlite3* connection, bool inspecting = false);

// A row of sqlite_schema.
struct SchemaObject {
  std::string type;  // table, index, view, trigger
  std::string name;
  std::string table;  // what an index or trigger belongs to
  std::string sql;    // empty for SQLite's automatic indexes
};

struct ForeignObject {
  std::string type;  // table, virtual table, index, view, trigger
  std::string name;
  std::string detail;          // what was found, for a person
  bool acts = false;           // would act on the engine's tables: the file is refused
  bool changed_table = false;  // one of the engine's tables, defined otherwise
};

// The objects of `schema` that `catalogue` does not account for.
std::vector<ForeignObject> FindForeignObjects(const Catalogue& catalogue,
                                              const std::vector<SchemaObject>& schema);

// Raises 3343 naming the first foreign object that acts, if there is one.
void RefuseActingObjects(const std::vector<ForeignObject>& foreign, const std::string& shown_path);

}  // namespace seluvorne::db
