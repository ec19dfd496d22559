#include "catalogue.h"

#include <SQLiteCpp/Statement.h>
#include <SQLiteCpp/Transaction.h>
#include <sqlite3.h>

#include <algorithm>
#include <map>
#include <optional>
#include <set>

#include "seluvorne/dao.h"
#include "seluvorne/error.h"
#include "seluvorne/member_table.h"

namespace seluvorne::db {

namespace {

constexpr std::string_view kFormatProperty = "Format";
constexpr std::string_view kFormatMarker = "SeluVorneDS database 1";
constexpr std::string_view kLocaleProperty = "Locale";

FieldDefinition IntegerField(std::string name) {
  return {std::move(name), dao::dbInteger, 2, "", false};
}
FieldDefinition TextField(std::string name, std::int32_t size) {
  return {std::move(name), dao::dbText, size, "", true};
}

// The catalogue tables, described like any other table.
const std::vector<TableDefinition>& CatalogueTables() {
  static const std::vector<TableDefinition> tables = {
      {"MSysProperties", "MSysProperties", {TextField("Name", 64), TextField("Value", 255)}},
      {"MSysTables",
       "MSysTables",
       {TextField("Name", 64), TextField("StoredName", 64), IntegerField("Position")}},
      {"MSysFields",
       "MSysFields",
       {TextField("TableName", 64), IntegerField("Position"), TextField("Name", 64),
        IntegerField("Type"), IntegerField("Size"), TextField("DefaultValue", 255),
        IntegerField("AllowZeroLength")}},
  };
  return tables;
}

bool SameName(std::string_view a, std::string_view b) {
  return detail::NameEqual{}(a, b);
}

// A name for a new SQLite table or index that no object of the file has,
// letter case ignored: `wanted` itself, else `wanted~2`, `wanted~3`, ...
std::string UnusedSchemaName(SQLite::Database& sqlite, const std::string& wanted) {
  SQLite::Statement taken(sqlite, "SELECT 1 FROM sqlite_schema WHERE name = ? COLLATE NOCASE");
  for (int suffix = 1;; ++suffix) {
    std::string candidate = suffix == 1 ? wanted : wanted + "~" + std::to_string(suffix);
    taken.reset();
    taken.bind(1, candidate);
    if (!taken.executeStep()) return candidate;
  }
}

void CreateStorage(SQLite::Database& sqlite, const TableDefinition& table) {
  sqlite.exec(StorageStatement(table));
}

void CreateHiddenIndexes(SQLite::Database& sqlite, const TableDefinition& table) {
  for (std::string_view kind : kHiddenIndexKinds) {
    if (HiddenIndexStatement(table, kind, "").empty()) continue;  // no such index here
    const std::string name = UnusedSchemaName(sqlite, table.stored_name + "~" + std::string(kind));
    sqlite.exec(HiddenIndexStatement(table, kind, name));
  }
}

void RecordTable(SQLite::Database& sqlite, const TableDefinition& table) {
  SQLite::Statement position(sqlite, "SELECT COALESCE(MAX(Position) + 1, 0) FROM MSysTables");
  position.executeStep();
  SQLite::Statement add_table(
      sqlite, "INSERT INTO MSysTables (Name, StoredName, Position) VALUES (?, ?, ?)");
  add_table.bind(1, table.name);
  add_table.bind(2, table.stored_name);
  add_table.bind(3, position.getColumn(0).getInt());
  add_table.exec();

  SQLite::Statement add_field(sqlite,
                              "INSERT INTO MSysFields (TableName, Position, Name, Type, Size, "
                              "DefaultValue, AllowZeroLength) VALUES (?, ?, ?, ?, ?, ?, ?)");
  for (std::size_t i = 0; i < table.fields.size(); ++i) {
    const FieldDefinition& field = table.fields[i];
    add_field.reset();
    add_field.bind(1, table.name);
    add_field.bind(2, static_cast<int>(i));
    add_field.bind(3, field.name);
    add_field.bind(4, field.type);
    add_field.bind(5, field.size);
    add_field.bind(6, field.default_value);
    add_field.bind(7, field.allow_zero_length ? -1 : 0);
    add_field.exec();
  }
}

void SetProperty(SQLite::Database& sqlite, std::string_view name, std::string_view value) {
  SQLite::Statement add(sqlite, "INSERT INTO MSysProperties (Name, Value) VALUES (?, ?)");
  add.bind(1, std::string(name));
  add.bind(2, std::string(value));
  add.exec();
}

}  // namespace

std::string StorageStatement(const TableDefinition& table) {
  std::string sql = "CREATE TABLE " + QuoteIdentifier(table.stored_name) + " (";
  for (std::size_t i = 0; i < table.fields.size(); ++i) {
    const FieldDefinition& field = table.fields[i];
    if (i > 0) sql += ", ";
    sql += QuoteIdentifier(field.name);
    sql += field.type == dao::dbInteger ? " INTEGER" : " TEXT";
  }
  return sql + ")";
}

// Indexes the object model does not show, for the queries the stores send
// most: a page's rows (WHERE PAGE = n, PAGE BETWEEN), in every table that has
// pages, and the page-kind rows the page directory looks up in KUTAIDATA
// (WHERE SUBPAGE = 0 AND BANGOU = 81). Each index costs every added row a
// page write, so the second goes only where that query goes, and holds only
// the rows it finds: one a page. Indexing all of KUTAIDATA by BANGOU put a
// page's 480 rows in 480 places of the index, and writing a page cost about
// twice as much.
std::string HiddenIndexStatement(const TableDefinition& table, std::string_view kind,
                                 const std::string& index_name) {
  const bool page = kind == "PAGE";
  if (!page && !SameName(table.name, "KUTAIDATA")) return "";
  const std::vector<std::string_view> fields =
      page ? std::vector<std::string_view>{"PAGE"}
           : std::vector<std::string_view>{"BANGOU", "SUBPAGE"};
  std::string sql = "CREATE INDEX " + QuoteIdentifier(index_name) + " ON " +
                    QuoteIdentifier(table.stored_name) + " (";
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const int position = table.FieldIndex(fields[i]);
    if (position < 0) return "";
    sql += (i > 0 ? ", " : "") + QuoteIdentifier(table.fields[position].name);
  }
  sql += ")";
  if (!page) {
    const int subpage = table.FieldIndex("SUBPAGE"), bangou = table.FieldIndex("BANGOU");
    sql += " WHERE " + QuoteIdentifier(table.fields[subpage].name) + " = 0 AND " +
           QuoteIdentifier(table.fields[bangou].name) + " = 81";
  }
  return sql;
}

int TableDefinition::FieldIndex(std::string_view field_name) const {
  for (std::size_t i = 0; i < fields.size(); ++i)
    if (SameName(fields[i].name, field_name)) return static_cast<int>(i);
  return -1;
}

std::string QuoteIdentifier(std::string_view name) {
  std::string quoted = "\"";
  for (char c : name) {
    if (c == '"') quoted += '"';
    quoted += c;
  }
  return quoted + "\"";
}

void CheckName(std::string_view name) {
  bool valid = !name.empty() && name.size() <= 64 * 4 && name.front() != ' ';
  std::size_t characters = 0;
  for (unsigned char c : name) {
    if ((c & 0xC0) != 0x80) ++characters;  // count UTF-8 lead bytes
    if (c < 0x20 || c == 0x7F || c == '.' || c == '!' || c == '`' || c == '[' || c == ']')
      valid = false;
  }
  if (characters > 64 || SameName(name.substr(0, 7), "sqlite_")) valid = false;
  if (!valid) Raise(errc::kInvalidName, name);
}

void Catalogue::Create(SQLite::Database& sqlite, std::string_view locale) {
  SQLite::Transaction transaction(sqlite, SQLite::TransactionBehavior::IMMEDIATE);
  for (const TableDefinition& table : CatalogueTables())
    CreateStorage(sqlite, table);
  for (const TableDefinition& table : CatalogueTables())
    RecordTable(sqlite, table);
  SetProperty(sqlite, kFormatProperty, kFormatMarker);
  SetProperty(sqlite, kLocaleProperty, locale);
  transaction.commit();
}

Catalogue Catalogue::Load(SQLite::Database& sqlite, std::string_view shown_path,
                          std::int64_t& schema_version) {
  // One statement, so one read transaction, for the whole catalogue and the
  // schema version it belongs to. Rows: 0 a property (name, value), 1 a table
  // (name, stored name, position), 2 a field (table, name, position, type,
  // size, default, zero length), 3 the schema version, 4 an object of the
  // file's schema (type, name, table, statement).
  static constexpr const char* kQuery =
      "SELECT 0, Name, Value, NULL, NULL, NULL, NULL, NULL FROM MSysProperties "
      "UNION ALL SELECT 1, Name, StoredName, Position, NULL, NULL, NULL, NULL FROM MSysTables "
      "UNION ALL SELECT 2, TableName, Name, Position, Type, Size, DefaultValue, AllowZeroLength "
      "FROM MSysFields "
      "UNION ALL SELECT 3, NULL, NULL, schema_version, NULL, NULL, NULL, NULL "
      "FROM pragma_schema_version "
      "UNION ALL SELECT 4, type, name, tbl_name, sql, NULL, NULL, NULL FROM sqlite_schema "
      "ORDER BY 1, 2, 4";
  std::optional<SQLite::Statement> rows;
  try {
    rows.emplace(sqlite, kQuery);
  } catch (const SQLite::Exception& failure) {
    // A schema past the engine's limits (untrusted.h), which `check` names.
    if (std::string_view(failure.what()).starts_with("malformed database schema"))
      RaiseExplained(errc::kUnrecognizedFormat, shown_path,
                     std::string(failure.what()) + "; `seluvorne check` names it");
    // No catalogue tables (or not ours): a file of some other program.
    if (failure.getErrorCode() == SQLITE_ERROR) Raise(errc::kUnrecognizedFormat, shown_path);
    throw;
  }
  Catalogue catalogue;
  std::string format;
  std::map<std::string, TableDefinition> by_name;
  std::vector<std::pair<int, std::string>> order;  // position, name
  std::vector<SchemaObject> schema;
  while (rows->executeStep()) {
    const int kind = rows->getColumn(0).getInt();
    if (kind == 0) {
      std::string name = rows->getColumn(1).getString();
      if (name == kFormatProperty) format = rows->getColumn(2).getString();
      if (name == kLocaleProperty) catalogue.locale_ = rows->getColumn(2).getString();
    } else if (kind == 1) {
      std::string name = rows->getColumn(1).getString();
      order.emplace_back(rows->getColumn(3).getInt(), name);
      by_name[name] = TableDefinition{name, rows->getColumn(2).getString(), {}};
    } else if (kind == 2) {
      auto table = by_name.find(rows->getColumn(1).getString());
      if (table == by_name.end()) continue;
      table->second.fields.push_back({rows->getColumn(2).getString(),
                                      static_cast<std::int16_t>(rows->getColumn(4).getInt()),
                                      rows->getColumn(5).getInt(), rows->getColumn(6).getString(),
                                      rows->getColumn(7).getInt() != 0});
    } else if (kind == 3) {
      schema_version = rows->getColumn(3).getInt64();
    } else {
      schema.push_back({rows->getColumn(1).getString(), rows->getColumn(2).getString(),
                        rows->getColumn(3).getString(), rows->getColumn(4).getString()});
    }
  }
  if (format != kFormatMarker) Raise(errc::kUnrecognizedFormat, shown_path);
  std::stable_sort(order.begin(), order.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  for (const auto& [position, name] : order) {
    TableDefinition& table = by_name[name];
    for (const TableDefinition& system : CatalogueTables())
      if (table.name == system.name) table.system = true;
    catalogue.tables_.push_back(std::make_shared<TableDefinition>(std::move(table)));
  }
  catalogue.foreign_ = FindForeignObjects(catalogue, schema);
  return catalogue;
}

void Catalogue::AppendTable(SQLite::Database& sqlite, const TableDefinition& table) {
  SQLite::Transaction transaction(sqlite, SQLite::TransactionBehavior::IMMEDIATE);
  SQLite::Statement exists(sqlite, "SELECT 1 FROM MSysTables WHERE Name = ?");
  exists.bind(1, table.name);
  if (exists.executeStep()) Raise(errc::kTableExists, table.name);

  TableDefinition stored = table;
  stored.stored_name = UnusedSchemaName(sqlite, table.name);
  CreateStorage(sqlite, stored);
  CreateHiddenIndexes(sqlite, stored);
  RecordTable(sqlite, stored);
  transaction.commit();
}

void Catalogue::RebuildStorage(SQLite::Database& sqlite, const TableDefinition& table) {
  const std::string stored = QuoteIdentifier(table.stored_name);
  const std::string kept = "temp." + QuoteIdentifier("seluvorne~rebuild");
  auto count = [&](const std::string& name) {
    return sqlite.execAndGet("SELECT COUNT(*) FROM " + name).getInt64();
  };
  std::set<std::string> present;
  {
    SQLite::Statement names(sqlite, "SELECT name FROM pragma_table_info(?)");
    names.bind(1, table.stored_name);
    while (names.executeStep())
      present.insert(names.getColumn(0).getString());
  }  // no read open on the schema while it changes
  std::string columns;
  for (const FieldDefinition& field : table.fields)
    columns += (columns.empty() ? "" : ", ") +
               (present.count(field.name) ? QuoteIdentifier(field.name) : std::string("NULL"));
  const std::int64_t rows = count(stored);
  sqlite.exec("CREATE TABLE " + kept + " AS SELECT " + columns + " FROM " + stored);
  sqlite.exec("DROP TABLE " + stored);
  CreateStorage(sqlite, table);
  sqlite.exec("INSERT INTO " + stored + " SELECT * FROM " + kept);
  sqlite.exec("DROP TABLE " + kept);
  CreateHiddenIndexes(sqlite, table);
  if (count(stored) != rows)
    Raise(errc::kEngineReserved, "(rows lost rebuilding " + table.name + ")");
}

std::shared_ptr<const TableDefinition> Catalogue::Find(std::string_view name) const {
  for (const auto& table : tables_)
    if (table->name == name) return table;
  for (const auto& table : tables_)
    if (SameName(table->name, name)) return table;
  return nullptr;
}

}  // namespace seluvorne::db
