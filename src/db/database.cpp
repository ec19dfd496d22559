// A database handle, its statements and its table definitions.

#include "connection.h"
#include "field_rules.h"
#include "seluvorne/dao.h"
#include "seluvorne/entry_lock.h"
#include "states.h"

namespace seluvorne::dao {

// ---- Database ---------------------------------------------------------------

const MemberTable<Database>& Database::Members() {
  static const auto table = MemberTable<Database>("Database")
                                .get("Name", &Database::Name)
                                .method("Close", &Database::Close)
                                .method("Execute", &Database::Execute)
                                .method("OpenRecordset", &Database::OpenRecordset)
                                .get("TableDefs", &Database::TableDefs)
                                .method("CreateTableDef", &Database::CreateTableDef);
  return table;
}

Database::Database(std::shared_ptr<db::DatabaseState> state) : state_(std::move(state)) {}

std::string Database::Name() const {
  EntryLock entry;
  state_->Use();
  return state_->name;
}

std::string Database::Locale() const {
  EntryLock entry;
  return state_->Use().catalogue().locale();
}

void Database::Close() {
  EntryLock entry;
  state_->Use();
  state_->connection.reset();
}

void Database::Execute(const std::string& sql, std::optional<std::int32_t>) {
  EntryLock entry;
  db::Connection& connection = state_->Use();
  db::PreparedStatement& statement = connection.Prepare(connection.Translate(sql));
  if (statement.ColumnCount() > 0) Raise(errc::kCannotExecuteSelect);
  db::Guarded(connection.shown_path(), [&] { statement.Run(); });
}

std::shared_ptr<Recordset> Database::OpenRecordset(const std::string& source,
                                                   std::optional<std::int16_t> type) {
  EntryLock entry;
  db::Connection& connection = state_->Use();
  std::int16_t kind = type.value_or(dbOpenDynaset);
  if (kind != dbOpenTable && kind != dbOpenDynaset && kind != dbOpenSnapshot)
    Raise(errc::kInvalidArgument, "(record set type)");

  auto state = std::make_shared<db::RecordsetState>();
  state->database = state_;
  state->type = kind;
  if (std::shared_ptr<const db::TableDefinition> table = connection.catalogue().Find(source)) {
    // A table by name: its fields in order; rows are read when first needed.
    state->table = table;
    std::string& query = state->query.text;
    query = "SELECT ";
    for (std::size_t i = 0; i < table->fields.size(); ++i) {
      state->columns.push_back(table->fields[i].name);
      state->column_fields.push_back(static_cast<int>(i));
      query += (i > 0 ? ", " : "") + db::QuoteIdentifier(table->fields[i].name);
    }
    query += " FROM " + db::QuoteIdentifier(table->stored_name);
    return std::make_shared<Recordset>(std::move(state));
  }

  if (source.find_first_of(" \t\r\n") == std::string::npos) Raise(errc::kTableNotFound, source);
  if (kind == dbOpenTable) Raise(errc::kInvalidOperation, "(a table-type set needs a table name)");
  state->query = connection.Translate(source);
  state->table = state->query.table;
  db::PreparedStatement& statement = connection.Prepare(state->query);
  if (statement.ColumnCount() == 0) Raise(errc::kInvalidOperation, "(not a SELECT statement)");
  for (int i = 0; i < statement.ColumnCount(); ++i) {
    state->columns.emplace_back(statement.ColumnName(i));
    state->column_fields.push_back(state->table ? state->table->FieldIndex(state->columns.back())
                                                : -1);
  }
  state->EnsureLoaded();
  return std::make_shared<Recordset>(std::move(state));
}

std::shared_ptr<dao::TableDefs> Database::TableDefs() {
  EntryLock entry;
  state_->Use();
  return std::make_shared<dao::TableDefs>(state_);
}

std::shared_ptr<TableDef> Database::CreateTableDef(const std::string& name) {
  EntryLock entry;
  state_->Use();
  return std::make_shared<TableDef>(name);
}

// ---- TableDefs --------------------------------------------------------------

const MemberTable<TableDefs>& TableDefs::Members() {
  static const auto table = MemberTable<TableDefs>("TableDefs")
                                .get("Count", &TableDefs::Count)
                                .get("Item", &TableDefs::ItemOf)
                                .method("Append", &TableDefs::Append)
                                .defaultMember("Item");
  return table;
}

TableDefs::TableDefs(std::shared_ptr<db::DatabaseState> database)
    : database_(std::move(database)) {}

std::int32_t TableDefs::Count() const {
  EntryLock entry;
  return static_cast<std::int32_t>(database_->Use().catalogue().tables().size());
}

std::shared_ptr<TableDef> TableDefs::Item(std::string_view name) const {
  EntryLock entry;
  std::shared_ptr<const db::TableDefinition> table = database_->Use().catalogue().Find(name);
  if (!table) Raise(errc::kItemNotFound, "(" + std::string(name) + ")");
  return std::make_shared<TableDef>(database_, std::move(table));
}

std::shared_ptr<TableDef> TableDefs::Item(std::int32_t position) const {
  EntryLock entry;
  const auto& tables = database_->Use().catalogue().tables();
  if (position < 0 || position >= static_cast<std::int32_t>(tables.size()))
    Raise(errc::kItemNotFound);
  return std::make_shared<TableDef>(database_, tables[position]);
}

std::shared_ptr<TableDef> TableDefs::ItemOf(const vb::Variant& index) const {
  if (const std::string* name = index.peek<std::string>()) return Item(std::string_view(*name));
  return Item(vb::CLng(index));
}

void TableDefs::Append(const std::shared_ptr<TableDef>& table) {
  EntryLock entry;
  if (!table) Raise(errc::kObjectNotSet);
  db::Connection& connection = database_->Use();
  if (table->appended_) Raise(errc::kObjectExists);
  db::CheckName(table->name_);
  db::TableDefinition definition{table->name_, "", {}};
  for (const std::shared_ptr<Field>& field : table->fields_->fields_) {
    db::CheckFieldDefinition(field->Definition().definition);
    definition.fields.push_back(field->Definition().definition);
  }
  if (definition.fields.empty()) Raise(errc::kNoFieldDefined);
  connection.AppendTable(definition);
  for (const std::shared_ptr<Field>& field : table->fields_->fields_)
    field->Definition().fixed = true;
  table->BecomeAppended(database_, connection.catalogue().Find(definition.name));
}

// ---- TableDef ---------------------------------------------------------------

const MemberTable<TableDef>& TableDef::Members() {
  static const auto table = MemberTable<TableDef>("TableDef")
                                .get("Name", &TableDef::Name)
                                .method("CreateField", &TableDef::CreateField)
                                .get("Fields", &TableDef::Fields);
  return table;
}

TableDef::TableDef(std::string name)
    : name_(std::move(name)),
      fields_(std::make_shared<dao::Fields>(std::vector<std::shared_ptr<Field>>{}, true)) {}

TableDef::TableDef(std::shared_ptr<db::DatabaseState> database,
                   std::shared_ptr<const db::TableDefinition> table) {
  std::vector<std::shared_ptr<Field>> fields;
  for (const db::FieldDefinition& definition : table->fields)
    fields.push_back(
        std::make_shared<Field>(std::make_shared<db::FieldDefinitionState>(definition, true)));
  name_ = table->name;
  fields_ = std::make_shared<dao::Fields>(std::move(fields), false);
  database_ = std::move(database);
  appended_ = std::move(table);
}

void TableDef::BecomeAppended(std::shared_ptr<db::DatabaseState> database,
                              std::shared_ptr<const db::TableDefinition> table) {
  EntryLock entry;
  database_ = std::move(database);
  appended_ = std::move(table);
  fields_->appendable_ = false;
}

std::string TableDef::Name() const {
  EntryLock entry;
  if (database_) database_->Use();
  return name_;
}

std::shared_ptr<Field> TableDef::CreateField(const std::string& name,
                                             std::optional<std::int16_t> type,
                                             std::optional<std::int32_t> size) {
  EntryLock entry;
  db::FieldDefinition definition{name, type.value_or(0), 0, "", false};
  if (definition.type == dbInteger) definition.size = 2;
  if (definition.type == dbText) definition.size = size.value_or(50);
  return std::make_shared<Field>(std::make_shared<db::FieldDefinitionState>(definition, false));
}

std::shared_ptr<dao::Fields> TableDef::Fields() {
  EntryLock entry;
  if (database_) database_->Use();
  return fields_;
}

}  // namespace seluvorne::dao
