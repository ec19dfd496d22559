// What the object model's handles share behind their public faces.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "catalogue.h"
#include "connection.h"
#include "seluvorne/error.h"
#include "seluvorne/variant.h"

namespace seluvorne::db {

// An open database handle. Its record sets and table definitions keep it, and
// fail with 3420 once it is closed.
struct DatabaseState {
  std::string name;                        // the path as given
  std::shared_ptr<Connection> connection;  // null once closed

  Connection& Use() const {
    if (!connection) Raise(errc::kObjectInvalid);
    return *connection;
  }
};

// A field definition that is still being put together, until its table is
// appended; then it is fixed.
struct FieldDefinitionState {
  FieldDefinition definition;
  bool fixed = false;
};

// The rows of a record set, its position and the row being added.
//
// Rows are read whole when the set is first read: a set keeps no SQLite
// statement running between calls, so it holds no read transaction open
// (which would keep other processes' commits from it, and its own writes
// from committing), and RecordCount and MoveLast cost nothing.
struct RecordsetState {
  std::shared_ptr<DatabaseState> database;
  std::int16_t type = 0;
  // The table rows are added to; null for a set that cannot add rows.
  std::shared_ptr<const TableDefinition> table;
  std::vector<std::string> columns;
  std::vector<int> column_fields;  // per column, its field in `table`, or -1
  // Per column of a set opened on a query, the field it reads, if any.
  struct ColumnOrigin {
    std::shared_ptr<const TableDefinition> table;
    int field = -1;
  };
  std::vector<ColumnOrigin> origins;
  bool from_query = false;  // columns come from the statement, known when it runs
  Translation query;        // what reads the rows, for SQLite
  bool loaded = false;
  bool closed = false;

  std::shared_ptr<const ReadRows> result;  // the rows read, perhaps shared
  std::int32_t rows = 0;
  std::int32_t position = 0;  // rows when at the end
  std::int32_t visited = 0;   // what RecordCount answers

  bool adding = false;
  std::vector<vb::Variant> new_row;  // per field of `table`
  // The row AddNew starts from, worked out from `table`'s defaults once:
  // a page is thousands of rows through one set.
  std::optional<std::vector<vb::Variant>> default_row;
  std::string insert;  // the statement that adds a row to `table`

  // The connection, after checking that neither the set nor its database
  // is closed (3420).
  Connection& Use() const {
    if (closed) Raise(errc::kObjectInvalid);
    return database->Use();
  }
  // Reads the rows when that has not happened yet.
  void EnsureLoaded() {
    Use();
    if (!loaded) Load();
  }
  void Load();
  // Names the columns of a set opened on a query as the statement has them
  // now, with the field each reads; a set reading anything but fields of its
  // one table cannot add rows.
  void DescribeColumns(Connection& connection, const PreparedStatement& statement);
  // Column `column` of the current row (3021 at the end or start), or of the
  // row being added.
  vb::Variant ValueAt(int column) {
    Use();
    if (adding) return AddedValueAt(column);
    if (!loaded) Load();
    if (position >= rows) Raise(errc::kNoCurrentRecord);
    return result->Value(static_cast<std::size_t>(position) * columns.size() + column);
  }
  vb::Variant AddedValueAt(int column) const;
  void SetValueAt(int column, vb::Variant value);
  // The field definition behind a column; null for a computed column.
  const FieldDefinition* FieldAt(int column) const;
  int ColumnIndex(std::string_view name) const;  // -1 when none
};

}  // namespace seluvorne::db
