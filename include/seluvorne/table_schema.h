// Tables described as data, and the one routine that creates them.
//
// Every table the stores create has the same shape: 16-bit integer key
// fields whose default is -1, then text fields of a fixed size that accept
// the empty text. A table is therefore a name and a list of fields, and one
// routine turns such a list into table definitions, fields and their
// properties, in order. The floor file, its late additions and the switch
// file are all made through it.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "seluvorne/dao.h"

namespace seluvorne::frame {

struct FieldSchema {
  std::string_view name;
  std::int16_t type;      // dao::dbInteger (default "-1") or dao::dbText (empty text allowed)
  std::int32_t size = 0;  // characters, for a text field
};

struct TableSchema {
  std::string_view name;
  std::span<const FieldSchema> fields;
};

// Appends `table` to the database's TableDefs. The engine's errors (3010 for
// a table of that exact name, 3420 for a closed handle) pass through.
void CreateTable(dao::Database& db, const TableSchema& table);

// Creates a new database file at `path` with the suite's locale and `tables`
// in order, and answers it open. The file appears with all its tables or not
// at all. Raises the engine's 3204 when the file exists, 3044 when its folder
// does not; the existing file is left as it was.
std::shared_ptr<dao::Database> CreateDatabaseWithTables(const std::string& path,
                                                        std::span<const TableSchema> tables);

// Runs a "create if missing" step of an opener. Another client may have done
// the same meanwhile: the error `number` that says so (3204 for a file, 3010
// for a table, both checked inside the creating write) is no failure, and the
// opener goes on with what the other client made.
void AcceptIfAnotherDidIt(int number, const std::function<void()>& step);

}  // namespace seluvorne::frame
