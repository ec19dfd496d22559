// Record sets: reading rows forwards and adding rows one at a time.

#include <algorithm>

#include "field_rules.h"
#include "seluvorne/dao.h"
#include "seluvorne/entry_lock.h"
#include "states.h"
#include "untrusted.h"

namespace seluvorne::db {

void RecordsetState::Load() {
  Connection& connection = Use();
  // The same query on an unchanged file gives the same rows: share them.
  // An unchanged file has an unchanged schema too, so a set opened on a
  // query names its columns from the cached statement as it stands.
  std::shared_ptr<const ReadRows> read = connection.RememberedRows(query);
  if (read) {
    if (from_query) DescribeColumns(connection, connection.Prepare(query));
  } else {
    auto fresh = std::make_shared<ReadRows>();
    PreparedStatement& statement = connection.Prepare(query);
    Guarded(connection.shown_path(), [&] {
      // The first step prepares the statement again when the schema changed
      // since it was cached, so the columns are read after it.
      bool row = statement.Step();
      if (from_query) DescribeColumns(connection, statement);
      const int width = static_cast<int>(columns.size());
      fresh->Reserve(statement.values_last_read, statement.text_bytes_last_read);
      for (; row; row = statement.Step()) {
        statement.AppendRow(*fresh, width);
        if (fresh->value_count() > kMaxValuesPerRead ||
            fresh->text_bytes() > kMaxTextBytesPerRead) {
          statement.Reset();
          Raise(errc::kOutOfMemory,
                "(one read of more values than any floor holds: " + connection.shown_path() + ")");
        }
      }
      statement.Reset();  // ends the read transaction now, not at the next use
    });
    statement.values_last_read = fresh->value_count();
    statement.text_bytes_last_read = fresh->text_bytes();
    connection.RememberRows(query, fresh);
    read = std::move(fresh);
  }
  result = std::move(read);
  rows = result->count();
  loaded = true;
  position = 0;
  visited = rows > 0 ? 1 : 0;
}

namespace {
// Whether a column's name is one a statement gave it (PAGE, AS N) rather
// than the text of an expression (PAGE + ?, COUNT(*)).
bool IsGivenName(std::string_view name) {
  if (name.empty()) return false;
  for (unsigned char c : name)
    if (!((c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_' ||
          c >= 0x80))
      return false;
  return true;
}
}  // namespace

void RecordsetState::DescribeColumns(Connection& connection, const PreparedStatement& statement) {
  const Catalogue& catalogue = connection.catalogue();
  columns.clear();
  column_fields.clear();
  origins.clear();
  int expressions = 0;
  for (int i = 0; i < statement.ColumnCount(); ++i) {
    ColumnOrigin origin;
    const char* stored_table = statement.ColumnTable(i);
    const char* stored_field = statement.ColumnOrigin(i);
    if (stored_table && stored_field)
      for (const auto& candidate : catalogue.tables())
        if (candidate->stored_name == stored_table) {
          origin = {candidate, candidate->FieldIndex(stored_field)};
          break;
        }
    std::string name = statement.ColumnName(i);
    // Unnamed expressions are named as the original engine named them.
    if (!stored_field && !IsGivenName(name)) name = "Expr" + std::to_string(1000 + expressions++);
    columns.push_back(std::move(name));
    const bool own = origin.table && table && origin.table->stored_name == table->stored_name;
    column_fields.push_back(own ? origin.field : -1);
    if (column_fields.back() < 0) table = nullptr;  // an expression, or another table's field
    origins.push_back(std::move(origin));
  }
}

vb::Variant RecordsetState::AddedValueAt(int column) const {
  int field = column_fields[column];
  return field >= 0 ? new_row[field] : vb::Variant(vb::Null);
}

void RecordsetState::SetValueAt(int column, vb::Variant value) {
  Use();
  if (!adding) Raise(errc::kUpdateWithoutAddNew);
  int field = column_fields[column];
  if (field < 0) Raise(errc::kInvalidOperation, "(a computed column cannot be set)");
  new_row[field] = std::move(value);
}

const FieldDefinition* RecordsetState::FieldAt(int column) const {
  if (from_query) {
    const ColumnOrigin& origin = origins[column];
    return origin.table && origin.field >= 0 ? &origin.table->fields[origin.field] : nullptr;
  }
  int field = column_fields[column];
  return field >= 0 ? &table->fields[field] : nullptr;
}

int RecordsetState::ColumnIndex(std::string_view name) const {
  for (std::size_t i = 0; i < columns.size(); ++i)
    if (detail::NameEqual{}(columns[i], name)) return static_cast<int>(i);
  return -1;
}

}  // namespace seluvorne::db

namespace seluvorne::dao {

const MemberTable<Recordset>& Recordset::Members() {
  static const auto table = MemberTable<Recordset>("Recordset")
                                .get("EOF", &Recordset::IsEOF)
                                .get("BOF", &Recordset::IsBOF)
                                .method("MoveFirst", &Recordset::MoveFirst)
                                .method("MoveLast", &Recordset::MoveLast)
                                .method("MoveNext", &Recordset::MoveNext)
                                .get("RecordCount", &Recordset::RecordCount)
                                .get("Fields", &Recordset::Fields)
                                .method("AddNew", &Recordset::AddNew)
                                .method("Update", &Recordset::Update)
                                .method("GetRows", &Recordset::GetRows)
                                .method("Close", &Recordset::Close)
                                .defaultMember("Fields");
  return table;
}

Recordset::Recordset(std::shared_ptr<db::RecordsetState> state) : state_(std::move(state)) {}

bool Recordset::IsEOF() const {
  EntryLock entry;
  state_->EnsureLoaded();
  return state_->position >= state_->rows;
}

bool Recordset::IsBOF() const {
  EntryLock entry;
  state_->EnsureLoaded();
  return state_->rows == 0;  // a set is before its first row only when it has none
}

void Recordset::MoveFirst() {
  EntryLock entry;
  state_->EnsureLoaded();
  if (state_->rows == 0) Raise(errc::kNoCurrentRecord);
  state_->adding = false;
  state_->position = 0;
}

void Recordset::MoveLast() {
  EntryLock entry;
  state_->EnsureLoaded();
  if (state_->rows == 0) Raise(errc::kNoCurrentRecord);
  state_->adding = false;
  state_->position = state_->rows - 1;
  state_->visited = state_->rows;
}

void Recordset::MoveNext() {
  EntryLock entry;
  state_->EnsureLoaded();
  if (state_->position >= state_->rows) Raise(errc::kNoCurrentRecord);
  state_->adding = false;
  ++state_->position;
  state_->visited = std::max(state_->visited, std::min(state_->position + 1, state_->rows));
}

std::int32_t Recordset::RecordCount() const {
  EntryLock entry;
  state_->EnsureLoaded();
  // A table-type set knows its table's row count at once; the others count
  // the rows visited so far.
  return state_->type == dbOpenTable ? state_->rows : state_->visited;
}

std::shared_ptr<dao::Fields> Recordset::Fields() {
  EntryLock entry;
  state_->Use();
  if (!fields_) {
    std::vector<std::shared_ptr<Field>> fields;
    for (std::size_t i = 0; i < state_->columns.size(); ++i)
      fields.push_back(std::make_shared<Field>(state_, static_cast<int>(i)));
    fields_ = std::make_shared<dao::Fields>(std::move(fields), false);
  }
  return fields_;
}

vb::Variant Recordset::Value(std::string_view name) const {
  EntryLock entry;
  int column = state_->ColumnIndex(name);
  if (column < 0) Raise(errc::kItemNotFound, "(" + std::string(name) + ")");
  return state_->ValueAt(column);
}

void Recordset::SetValue(std::string_view name, vb::Variant value) {
  EntryLock entry;
  int column = state_->ColumnIndex(name);
  if (column < 0) Raise(errc::kItemNotFound, "(" + std::string(name) + ")");
  state_->SetValueAt(column, std::move(value));
}

void Recordset::AddNew() {
  EntryLock entry;
  const db::Connection& connection = state_->Use();
  if (state_->type == dbOpenSnapshot || !state_->table || state_->table->system ||
      connection.read_only())
    Raise(errc::kReadOnly);
  if (!state_->default_row) {
    state_->default_row.emplace();
    for (const db::FieldDefinition& field : state_->table->fields)
      state_->default_row->push_back(db::DefaultValue(field));
  }
  state_->new_row = *state_->default_row;
  state_->adding = true;
}

void Recordset::Update() {
  EntryLock entry;
  db::Connection& connection = state_->Use();
  if (!state_->adding) Raise(errc::kUpdateWithoutAddNew);
  const db::TableDefinition& table = *state_->table;
  std::vector<vb::Variant> stored;
  stored.reserve(table.fields.size());
  for (std::size_t i = 0; i < table.fields.size(); ++i)
    stored.push_back(db::StoredValue(table.fields[i], state_->new_row[i]));

  if (state_->insert.empty()) {
    std::string names, parameters;
    for (std::size_t i = 0; i < table.fields.size(); ++i) {
      names += (i > 0 ? ", " : "") + db::QuoteIdentifier(table.fields[i].name);
      parameters += i > 0 ? ", ?" : "?";
    }
    state_->insert = "INSERT INTO " + db::QuoteIdentifier(table.stored_name) + " (" + names +
                     ") VALUES (" + parameters + ")";
  }
  db::PreparedStatement& insert = connection.Prepare(state_->insert);
  // The texts are bound where `stored` holds them, not copied: a page is
  // thousands of rows. They are unbound before `stored` goes, error or not.
  struct Unbind {
    db::PreparedStatement& statement;
    ~Unbind() { statement.ClearBindings(); }
  } unbind{insert};
  db::Guarded(connection.shown_path(), [&] {
    for (std::size_t i = 0; i < stored.size(); ++i)
      insert.BindBorrowed(static_cast<int>(i) + 1, stored[i]);
    insert.Run();
  });
  state_->adding = false;
}

vb::Array<vb::Variant> Recordset::GetRows(std::optional<std::int32_t> rows) {
  EntryLock entry;
  state_->EnsureLoaded();
  std::int32_t wanted = rows.value_or(1);
  if (wanted < 1) Raise(errc::kInvalidArgument, "(number of rows)");
  if (state_->position >= state_->rows) Raise(errc::kNoCurrentRecord);
  std::int32_t count = std::min(wanted, state_->rows - state_->position);
  const auto width = static_cast<std::int32_t>(state_->columns.size());
  vb::Array<vb::Variant> result({width - 1, count - 1});
  // Arrays keep their first index fastest, so (field, row) is the rows' own
  // order: the block is copied as it is.
  const auto first = static_cast<std::size_t>(state_->position) * width;
  auto out = result.begin();
  for (std::size_t i = 0; i < static_cast<std::size_t>(count) * width; ++i, ++out)
    *out = state_->result->Value(first + i);
  state_->adding = false;
  state_->position += count;
  state_->visited = std::max(state_->visited, std::min(state_->position + 1, state_->rows));
  return result;
}

void Recordset::Close() {
  EntryLock entry;
  state_->Use();
  state_->closed = true;
  state_->result.reset();
}

}  // namespace seluvorne::dao
