// The catalogue: what the engine remembers about a database beyond what
// SQLite keeps. Each table's fields in order with their type, size, default
// value and allow-zero-length flag, the locale given at creation, and the
// name of the SQLite table behind each table.
//
// It lives in three tables of the file, which describe themselves too and so
// are listed first by TableDefs, as the original engine listed its system
// tables:
//   MSysProperties (Name, Value)            the format marker and the locale
//   MSysTables     (Name, StoredName, Position)
//   MSysFields     (TableName, Position, Name, Type, Size, DefaultValue, AllowZeroLength)
//
// Table names are kept exactly as given. SQLite compares names without regard
// to letter case, so a table whose name differs from another only in case is
// stored under a made-up name ("SPANTOP~2"); statements reach it through
// Find, which prefers the exact name.
#pragma once

#include <SQLiteCpp/Database.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "untrusted.h"

namespace seluvorne::db {

struct FieldDefinition {
  std::string name;
  std::int16_t type = 0;      // dbInteger or dbText
  std::int32_t size = 0;      // characters of a text field; 2 for an integer
  std::string default_value;  // an expression text, empty for none
  bool allow_zero_length = false;
};

struct TableDefinition {
  std::string name;         // exactly as given
  std::string stored_name;  // the SQLite table
  std::vector<FieldDefinition> fields;
  bool system = false;  // a catalogue table: read-only to statements and record sets

  // The position of the field of that name (letter case ignored), or -1.
  int FieldIndex(std::string_view field_name) const;
};

// The SQL form of an identifier: in double quotes, inner quotes doubled.
std::string QuoteIdentifier(std::string_view name);

// The statement that makes a table's SQLite storage: its fields in order,
// each INTEGER or TEXT, nothing else.
std::string StorageStatement(const TableDefinition& table);

// The engine's hidden indexes, by kind: a table's rows of a page ("PAGE"),
// and KUTAIDATA's page-kind rows ("BANGOU"). The statement that makes the
// index `index_name` of that kind on `table`, empty when the table has no
// such index.
inline constexpr std::string_view kHiddenIndexKinds[] = {"PAGE", "BANGOU"};
std::string HiddenIndexStatement(const TableDefinition& table, std::string_view kind,
                                 const std::string& index_name);

// Raises 3125 unless `name` can name a table or field: 1 to 64 characters,
// no leading blank, none of . ! ` [ ] or control characters, and not SQLite's
// reserved "sqlite_" prefix.
void CheckName(std::string_view name);

class Catalogue {
 public:
  // Writes the catalogue tables, the format marker and the locale into a new,
  // empty database.
  static void Create(SQLite::Database& sqlite, std::string_view locale);

  // Reads the catalogue of an open database, and the schema version it was
  // read at, in one read transaction; 3343 when it has none of ours.
  static Catalogue Load(SQLite::Database& sqlite, std::string_view shown_path,
                        std::int64_t& schema_version);

  // Creates the table, its hidden indexes and its catalogue rows in one
  // transaction. Raises 3010 when a table of exactly that name exists.
  static void AppendTable(SQLite::Database& sqlite, const TableDefinition& table);

  // Makes a table's storage again from its definition, with its hidden
  // indexes, keeping its rows (a field the storage lost comes back empty);
  // inside the caller's transaction. For tables another program changed.
  static void RebuildStorage(SQLite::Database& sqlite, const TableDefinition& table);

  // The catalogue tables first, then the user tables in creation order.
  const std::vector<std::shared_ptr<const TableDefinition>>& tables() const { return tables_; }
  // The table of exactly that name, else the first whose name differs only in
  // letter case; null when there is none.
  std::shared_ptr<const TableDefinition> Find(std::string_view name) const;
  const std::string& locale() const { return locale_; }
  // The schema objects of the file the catalogue does not account for
  // (untrusted.h), as found by Load.
  const std::vector<ForeignObject>& foreign() const { return foreign_; }

 private:
  std::vector<std::shared_ptr<const TableDefinition>> tables_;
  std::string locale_;
  std::vector<ForeignObject> foreign_;
};

}  // namespace seluvorne::db
