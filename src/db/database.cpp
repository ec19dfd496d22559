// A database handle, its statements and its table definitions.

#include "connection.h"
#include "field_rules.h"
#include "seluvorne/dao.h"
#include "seluvorne/entry_lock.h"
#include "states.h"
#include "write_rules.h"

namespace seluvorne::dao {

// ---- Database ---------------------------------------------------------------

const MemberTable<Database>& Database::Members() {
  static const auto table = MemberTable<Database>("Database")
                                .get("Name", &Database::Name)
                                .method("Close", &Database::Close)
                                .method("Execute", &Database::Execute)
                                .method("OpenRecordset", &Database::OpenRecordset)
                                .get("TableDefs", &Database::TableDefs)
                                .method("CreateTableDef", &Database::CreateTableDef)
                                .get("Updatable", &Database::Updatable);
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

bool Database::Updatable() const {
  return !state_->Use().read_only();
}

void Database::Close() {
  EntryLock entry;
  state_->Use();
  state_->connection.reset();
}

bool Database::IsOpen() const {
  return state_->connection != nullptr;
}

void Database::Execute(const std::string& sql, std::optional<std::int32_t>) {
  EntryLock entry;
  db::Connection& connection = state_->Use();
  const db::Translation& translation = connection.Translate(sql);
  db::PreparedStatement& statement = connection.Prepare(translation);
  // The authorizer has judged what the statement does; what it is, is judged
  // here (VACUUM, for one, asks no permission).
  if (db::ClassifyStatement(translation.first_word) == db::StatementKind::Other)
    Raise(errc::kInvalidSqlStatement, "(" + translation.first_word + ")");
  if (statement.ColumnCount() > 0) Raise(errc::kCannotExecuteSelect);
  if (connection.read_only()) Raise(errc::kReadOnly);
  db::RunWithFieldRules(connection, statement);
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
  // A source with blanks is most likely a statement: the catalogue as read
  // answers for it, without rereading it for a name that is not there.
  const bool statement_like = source.find_first_of(" \t\r\n") != std::string::npos;
  if (std::shared_ptr<const db::TableDefinition> table =
          statement_like ? connection.catalogue().Find(source) : connection.FindTable(source)) {
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

  if (!statement_like) Raise(errc::kTableNotFound, source);
  if (kind == dbOpenTable) Raise(errc::kInvalidOperation, "(a table-type set needs a table name)");
  state->query = connection.Translate(source);
  state->table = state->query.table;
  state->from_query = true;
  db::PreparedStatement& statement = connection.Prepare(state->query);
  if (db::ClassifyStatement(state->query.first_word) == db::StatementKind::Other)
    Raise(errc::kInvalidSqlStatement, "(" + state->query.first_word + ")");
  if (statement.ColumnCount() == 0) Raise(errc::kInvalidOperation, "(not a SELECT statement)");
  state->EnsureLoaded();  // the columns are known once SQLite has run the statement
  return std::make_shared<Recordset>(std::move(state));
}

std::shared_ptr<dao::TableDefs> Database::TableDefs() {
  EntryLock entry;
  state_->Use();
  return std::make_shared<dao::TableDefs>(state_);
}

std::shared_ptr<TableDef> Database::CreateTableDef(const std::string& name) {
  EntryLock entry;
  if (state_->Use().read_only()) Raise(errc::kReadOnly);
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
  // A listing starts here: it shows the tables other processes added too.
  db::Connection& connection = database_->Use();
  connection.RefreshCatalogue();
  return static_cast<std::int32_t>(connection.catalogue().tables().size());
}

std::shared_ptr<TableDef> TableDefs::Item(std::string_view name) const {
  EntryLock entry;
  std::shared_ptr<const db::TableDefinition> table = database_->Use().FindTable(name);
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
  if (connection.read_only()) Raise(errc::kReadOnly);
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

// Its Fields are made when first asked for: the table checks of every floor
// open look a table up by name and read only its Name.
TableDef::TableDef(std::shared_ptr<db::DatabaseState> database,
                   std::shared_ptr<const db::TableDefinition> table)
    : name_(table->name), database_(std::move(database)), appended_(std::move(table)) {}

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
  if (!fields_) {
    std::vector<std::shared_ptr<Field>> fields;
    for (const db::FieldDefinition& definition : appended_->fields)
      fields.push_back(
          std::make_shared<Field>(std::make_shared<db::FieldDefinitionState>(definition, true)));
    fields_ = std::make_shared<dao::Fields>(std::move(fields), false);
  }
  return fields_;
}

}  // namespace seluvorne::dao
