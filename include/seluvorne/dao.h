// The database engine: a desktop-database object model (engine, workspace,
// database, table definitions, fields, record sets) over SQLite files.
//
// The floor, build-out and switch stores keep their data through this object
// model, with the member names the suite's clients know, so that a database
// handle can also travel through late-bound calls and to Python. Each file is
// an SQLite database with the engine's own catalogue tables (MSys...), which
// remember every table's fields in order with their properties, and the
// locale. docs/db.md describes the file layout and the SQL accepted.
//
//   auto engine = dao::DBEngine::Instance();
//   auto db = engine->Workspaces(0)->OpenDatabase(path);
//   auto rs = db->OpenRecordset("SELECT * FROM KUTAIDATA WHERE PAGE = 3;", dao::dbOpenDynaset);
//   while (!rs->IsEOF()) { vb::Variant v = rs->Fields()->Item("DATA")->Value(); rs->MoveNext(); }
//
// Handles are shared pointers. Database::Close closes that handle; its record
// sets and table definitions then raise 3420. The SQLite connection behind a
// file is shared by all handles of the process and closed with the last one.
// Every object is single-threaded, like the clients that use it.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "seluvorne/member_table.h"

namespace seluvorne::db {
// The engine's internals (src/db/).
struct DatabaseState;
struct FieldDefinitionState;
struct RecordsetState;
struct TableDefinition;
}  // namespace seluvorne::db

namespace seluvorne::dao {

// Field types.
inline constexpr std::int16_t dbInteger = 3;  // 16-bit integer
inline constexpr std::int16_t dbText = 10;    // text of a given size (characters)
// Execute option: raise the engine's error when the statement fails.
inline constexpr std::int32_t dbFailOnError = 128;
// Record set types.
inline constexpr std::int16_t dbOpenTable = 1;
inline constexpr std::int16_t dbOpenDynaset = 2;
inline constexpr std::int16_t dbOpenSnapshot = 4;
// The locale of the suite's files (Japanese, code page 932).
inline constexpr std::string_view dbLangJapanese = ";LANGID=0x0411;CP=932;COUNTRY=0";

class Database;
class Field;
class Fields;
class Recordset;
class TableDef;
class TableDefs;
class Workspace;

// The one engine of the process: created on first use, never released.
class DBEngine : public DispatchImpl<DBEngine> {
 public:
  static const MemberTable<DBEngine>& Members();
  static std::shared_ptr<DBEngine> Instance();

  // Workspaces(0), the default workspace; any other index raises 3265.
  std::shared_ptr<Workspace> Workspaces(const vb::Variant& index);
  // The same as on the default workspace.
  std::shared_ptr<Database> OpenDatabase(const std::string& path,
                                         std::optional<vb::Variant> options = std::nullopt,
                                         std::optional<bool> read_only = std::nullopt,
                                         std::optional<std::string> connect = std::nullopt);
  std::shared_ptr<Database> CreateDatabase(const std::string& path, const std::string& locale,
                                           std::optional<std::int32_t> options = std::nullopt);

  // How long a write waits for another process's lock before it raises 3218,
  // in milliseconds. Starts from SELUVORNE_BUSY_TIMEOUT_MS, else 5000.
  std::int32_t BusyTimeout() const;
  void SetBusyTimeout(std::int32_t milliseconds);

 private:
  std::shared_ptr<Workspace> workspace_;
};

class Workspace : public DispatchImpl<Workspace> {
 public:
  static const MemberTable<Workspace>& Members();

  std::string Name() const { return "#Default Workspace#"; }
  // Opens an existing database file, shared and read-write. `path` may use
  // backslashes. Only the defaults of the optional arguments are supported
  // (not exclusive, not read-only, no connect text); others raise 3001.
  // Raises 3044 (missing folder), 3024 (missing file), 3343 (not a database
  // of ours, or a legacy Jet file that cannot be read whole). A legacy Jet
  // file opens read-only (Updatable is false).
  std::shared_ptr<Database> OpenDatabase(const std::string& path,
                                         std::optional<vb::Variant> options = std::nullopt,
                                         std::optional<bool> read_only = std::nullopt,
                                         std::optional<std::string> connect = std::nullopt);
  // Creates a new database file with its catalogue and `locale` (";LANGID=...").
  // Raises 3204 when the file exists (it is left as it was), 3044 when its
  // folder does not. `options` (a file format) is accepted and ignored.
  std::shared_ptr<Database> CreateDatabase(const std::string& path, const std::string& locale,
                                           std::optional<std::int32_t> options = std::nullopt);
  // As CreateDatabase, with what `build` adds (tables) written before the file
  // appears under its name: other processes never see it without them. The
  // handle `build` gets is closed afterwards.
  std::shared_ptr<Database> CreateDatabaseWith(const std::string& path, const std::string& locale,
                                               const std::function<void(Database&)>& build);
};

// Opens a database its caller will write to, as the stores do. A legacy
// (Jet) file, which opens only read-only, raises 3343 that names the
// migration (`seluvorne migrate FLOOR`, `seluvorne.migrate_floor(folder)`).
std::shared_ptr<Database> OpenForUpdate(const std::string& path);

class Database : public DispatchImpl<Database> {
 public:
  static const MemberTable<Database>& Members();
  explicit Database(std::shared_ptr<db::DatabaseState> state);

  // The path the database was opened with.
  std::string Name() const;
  // The locale text given when the file was created.
  std::string Locale() const;
  // False for a legacy (Jet) file opened in place, which every write
  // refuses with 3027.
  bool Updatable() const;
  // Closes this handle; using it, or its record sets, afterwards raises 3420.
  void Close();
  // Whether Close has not run (for C++ callers; not reached by name).
  bool IsOpen() const;
  // Runs an action statement (DELETE, UPDATE, INSERT). A statement the engine
  // cannot parse raises 3131 with SQLite's message and changes nothing; a
  // SELECT raises 3065. Each statement is its own transaction, so it is
  // applied whole or not at all, with or without dbFailOnError.
  void Execute(const std::string& sql, std::optional<std::int32_t> options = std::nullopt);
  // A record set on a table (by name) or on a SELECT statement; `type` is
  // dbOpenDynaset (the default), dbOpenSnapshot (read-only) or dbOpenTable
  // (table names only).
  std::shared_ptr<Recordset> OpenRecordset(const std::string& source,
                                           std::optional<std::int16_t> type = std::nullopt);
  std::shared_ptr<dao::TableDefs> TableDefs();
  // A new table definition, to be given fields and appended to TableDefs.
  std::shared_ptr<TableDef> CreateTableDef(const std::string& name);

 private:
  friend class MemberTransaction;
  std::shared_ptr<db::DatabaseState> state_;
};

// The tables of a database: the engine's MSys catalogue tables first, then
// the user tables in creation order.
class TableDefs : public DispatchImpl<TableDefs> {
 public:
  static const MemberTable<TableDefs>& Members();
  explicit TableDefs(std::shared_ptr<db::DatabaseState> database);

  std::int32_t Count() const;
  // By name (the exact name first, then one that differs only in letter
  // case) or by position (from 0); 3265 when there is none.
  std::shared_ptr<TableDef> Item(std::string_view name) const;
  std::shared_ptr<TableDef> Item(std::int32_t position) const;
  // Creates the table in the file. Raises 3010 when a table of exactly that
  // name exists, 3264 when the definition has no fields. A name that differs
  // from an existing one only in letter case makes a second table.
  void Append(const std::shared_ptr<TableDef>& table);

 private:
  std::shared_ptr<TableDef> ItemOf(const vb::Variant& index) const;  // late-bound Item

  std::shared_ptr<db::DatabaseState> database_;
};

class TableDef : public DispatchImpl<TableDef> {
 public:
  static const MemberTable<TableDef>& Members();
  // A new definition (from CreateTableDef).
  explicit TableDef(std::string name);
  // A table of an open database.
  TableDef(std::shared_ptr<db::DatabaseState> database,
           std::shared_ptr<const db::TableDefinition> table);

  std::string Name() const;
  // A new field definition: type dbInteger or dbText; `size` for text
  // (characters, 1 to 255, 50 when omitted).
  std::shared_ptr<Field> CreateField(const std::string& name,
                                     std::optional<std::int16_t> type = std::nullopt,
                                     std::optional<std::int32_t> size = std::nullopt);
  std::shared_ptr<dao::Fields> Fields();

 private:
  friend class TableDefs;
  void BecomeAppended(std::shared_ptr<db::DatabaseState> database,
                      std::shared_ptr<const db::TableDefinition> table);

  std::string name_;
  std::shared_ptr<db::DatabaseState> database_;          // once appended
  std::shared_ptr<const db::TableDefinition> appended_;  // once appended
  std::shared_ptr<dao::Fields> fields_;
};

// The fields of a table definition or the columns of a record set.
class Fields : public DispatchImpl<Fields> {
 public:
  static const MemberTable<Fields>& Members();
  explicit Fields(std::vector<std::shared_ptr<Field>> fields, bool appendable);

  std::int32_t Count() const;
  // By name (letter case ignored) or by position (from 0); 3265 otherwise.
  const std::shared_ptr<Field>& Item(std::string_view name) const;
  const std::shared_ptr<Field>& Item(std::int32_t position) const;
  // Adds a field definition to a table not yet appended. Raises 3367 for a
  // second field of the same name (letter case ignored), 3219 on a table
  // already in a database or on a record set.
  void Append(const std::shared_ptr<Field>& field);

 private:
  friend class TableDef;
  friend class TableDefs;
  const std::shared_ptr<Field>& ItemOf(const vb::Variant& index) const;  // late-bound Item

  std::vector<std::shared_ptr<Field>> fields_;
  std::vector<std::string> names_;  // of fields_, for lookups by name
  bool appendable_;
  // Where a lookup by name starts: after the field found last, since a
  // reader asks for a row's fields in the same order row after row.
  mutable std::size_t next_lookup_ = 0;
};

// A field definition, or a column of a record set (which has a Value).
class Field : public DispatchImpl<Field> {
 public:
  static const MemberTable<Field>& Members();
  explicit Field(std::shared_ptr<db::FieldDefinitionState> definition);
  Field(std::shared_ptr<db::RecordsetState> recordset, int column);

  std::string Name() const;
  std::int16_t Type() const;
  std::int32_t Size() const;
  // The default of an added row that does not set the field: an expression
  // text ("-1", "\"text\""); empty for none.
  std::string DefaultValue() const;
  void SetDefaultValue(const std::string& expression);
  // Whether the text field accepts "" (3315 at Update otherwise).
  bool AllowZeroLength() const;
  void SetAllowZeroLength(bool allow);
  // The value of the current row: Integer, String or Null. Raises 3021 at
  // the end or start of the set; while adding, the value of the new row.
  vb::Variant Value() const;
  // Sets the value of the row being added (3020 outside AddNew). The field's
  // rules are checked at Update.
  void SetValue(vb::Variant value);
  // What a row added to this field's table stores for `value`, raising what
  // Update would (3349, 3163, 3315, 3421), so that a caller can check a batch
  // of rows before it adds the first. A field definition only (3219 otherwise).
  vb::Variant StoredValue(const vb::Variant& value) const;

 private:
  friend class Fields;
  friend class TableDefs;
  db::FieldDefinitionState& Definition() const;  // 3219 for a record set's column

  std::shared_ptr<db::FieldDefinitionState> definition_;  // a field definition
  std::shared_ptr<db::RecordsetState> recordset_;         // or a record set's column
  int column_ = -1;
};

// The rows of a table or a query, read forwards, and rows added one at a time.
// A set opened on a table name reads nothing until it is navigated or read,
// so that appending to a large table costs nothing at open.
class Recordset : public DispatchImpl<Recordset> {
 public:
  static const MemberTable<Recordset>& Members();
  explicit Recordset(std::shared_ptr<db::RecordsetState> state);

  // "EOF" and "BOF" late-bound.
  bool IsEOF() const;
  bool IsBOF() const;
  // Each raises 3021 on an empty set; MoveNext also at the end.
  void MoveFirst();
  void MoveLast();
  void MoveNext();
  // The rows visited so far: 1 after opening a set that has rows, 0 for an
  // empty one; MoveLast makes it the number of rows.
  std::int32_t RecordCount() const;
  std::shared_ptr<dao::Fields> Fields();
  // Shortcuts for Fields()->Item(name)->Value() and ->SetValue(value).
  vb::Variant Value(std::string_view name) const;
  void SetValue(std::string_view name, vb::Variant value);
  // Starts a new row, its fields at their defaults (Null without one).
  void AddNew();
  // Stores the new row, as its own transaction. Raises 3349 for an integer
  // outside 16 bits, 3163 for text longer than its field, 3315 for "" where
  // not allowed, 3421 for a value that is no number for an integer field;
  // the row stays pending then. 3020 without AddNew. A set whose rows were
  // read already does not show the new row; the next set opened does.
  void Update();
  // Up to `rows` rows (1 when omitted) from the current row on, as an array
  // (field, row); the current row moves past them. 3021 at the end.
  vb::Array<vb::Variant> GetRows(std::optional<std::int32_t> rows = std::nullopt);
  void Close();

 private:
  std::shared_ptr<db::RecordsetState> state_;
  std::shared_ptr<dao::Fields> fields_;
};

}  // namespace seluvorne::dao
