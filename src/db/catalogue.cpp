#include "catalogue.h"

#include <SQLiteCpp/Statement.h>
#include <SQLiteCpp/Transaction.h>

#include <map>

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
  std::string sql = "CREATE TABLE " + QuoteIdentifier(table.stored_name) + " (";
  for (std::size_t i = 0; i < table.fields.size(); ++i) {
    const FieldDefinition& field = table.fields[i];
    if (i > 0) sql += ", ";
    sql += QuoteIdentifier(field.name);
    sql += field.type == dao::dbInteger ? " INTEGER" : " TEXT";
  }
  sql += ")";
  sqlite.exec(sql);
}

// Indexes the object model does not show, for the queries the stores send
// most: a page's rows (WHERE PAGE = n, PAGE BETWEEN), in every table that has
// pages, and the page-kind rows the page directory looks up in KUTAIDATA
// (WHERE SUBPAGE = 0 AND BANGOU = 81). Each index costs every added row a
// page write, so the second goes only where that query goes.
void CreateHiddenIndexes(SQLite::Database& sqlite, const TableDefinition& table) {
  auto index = [&](const std::string& suffix, std::initializer_list<std::string_view> fields) {
    for (std::string_view field : fields)
      if (table.FieldIndex(field) < 0) return;
    std::string name = UnusedSchemaName(sqlite, table.stored_name + "~" + suffix);
    std::string sql = "CREATE INDEX " + QuoteIdentifier(name) + " ON " +
                      QuoteIdentifier(table.stored_name) + " (";
    bool first = true;
    for (std::string_view field : fields) {
      if (!first) sql += ", ";
      sql += QuoteIdentifier(table.fields[table.FieldIndex(field)].name);
      first = false;
    }
    sqlite.exec(sql + ")");
  };
  index("PAGE", {"PAGE"});
  if (SameName(table.name, "KUTAIDATA")) index("BANGOU", {"BANGOU", "SUBPAGE"});
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

Catalogue Catalogue::Load(SQLite::Database& sqlite, std::string_view shown_path) {
  Catalogue catalogue;
  if (!sqlite.tableExists("MSysProperties")) Raise(errc::kUnrecognizedFormat, shown_path);
  std::string format;
  SQLite::Statement properties(sqlite, "SELECT Name, Value FROM MSysProperties");
  while (properties.executeStep()) {
    std::string name = properties.getColumn(0).getString();
    if (name == kFormatProperty) format = properties.getColumn(1).getString();
    if (name == kLocaleProperty) catalogue.locale_ = properties.getColumn(1).getString();
  }
  if (format != kFormatMarker) Raise(errc::kUnrecognizedFormat, shown_path);

  std::map<std::string, TableDefinition> by_name;
  std::vector<std::string> order;
  SQLite::Statement tables(sqlite, "SELECT Name, StoredName FROM MSysTables ORDER BY Position");
  while (tables.executeStep()) {
    std::string name = tables.getColumn(0).getString();
    order.push_back(name);
    by_name[name] = TableDefinition{name, tables.getColumn(1).getString(), {}};
  }
  SQLite::Statement fields(sqlite,
                           "SELECT TableName, Name, Type, Size, DefaultValue, AllowZeroLength "
                           "FROM MSysFields ORDER BY TableName, Position");
  while (fields.executeStep()) {
    auto table = by_name.find(fields.getColumn(0).getString());
    if (table == by_name.end()) continue;
    table->second.fields.push_back({fields.getColumn(1).getString(),
                                    static_cast<std::int16_t>(fields.getColumn(2).getInt()),
                                    fields.getColumn(3).getInt(), fields.getColumn(4).getString(),
                                    fields.getColumn(5).getInt() != 0});
  }
  for (const std::string& name : order) {
    TableDefinition& table = by_name[name];
    for (const TableDefinition& system : CatalogueTables())
      if (table.name == system.name) table.system = true;
    catalogue.tables_.push_back(std::make_shared<TableDefinition>(std::move(table)));
  }
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

std::shared_ptr<const TableDefinition> Catalogue::Find(std::string_view name) const {
  for (const auto& table : tables_)
    if (table->name == name) return table;
  for (const auto& table : tables_)
    if (SameName(table->name, name)) return table;
  return nullptr;
}

}  // namespace seluvorne::db
