// A prepared statement of a connection's cache: bind, step, read.
//
// It holds a plain sqlite3_stmt rather than SQLiteCpp's Statement because the
// record sets read every value of every row through it, and SQLiteCpp's
// Column copies a shared pointer per value read. Failures are thrown as
// SQLiteCpp's exceptions all the same, so one mapping turns them into the
// engine's errors (engine_error.h).
#pragma once

#include <sqlite3.h>

#include <string>
#include <string_view>

#include "read_rows.h"
#include "seluvorne/variant.h"

namespace seluvorne::db {

class PreparedStatement {
 public:
  PreparedStatement(sqlite3* connection, const std::string& sql);
  ~PreparedStatement();
  PreparedStatement(const PreparedStatement&) = delete;
  PreparedStatement& operator=(const PreparedStatement&) = delete;

  int ColumnCount() const { return sqlite3_column_count(handle_); }
  const char* ColumnName(int column) const { return sqlite3_column_name(handle_, column); }
  // The table and column a result column reads, as SQLite stores them;
  // null for an expression.
  const char* ColumnTable(int column) const { return sqlite3_column_table_name(handle_, column); }
  const char* ColumnOrigin(int column) const { return sqlite3_column_origin_name(handle_, column); }
  // Ends a run (and its read transaction); bindings stay.
  void Reset() { sqlite3_reset(handle_); }
  // How often SQLite re-prepared the statement, as it does after a schema change.
  int Reprepares() const { return sqlite3_stmt_status(handle_, SQLITE_STMTSTATUS_REPREPARE, 0); }

  // Binds Integer, Long and reals as numbers, text as text, Null (and Empty) as NULL.
  void Bind(int index, const vb::Variant& value);
  // As Bind, but text is bound where it lies, not copied: `value` must stay
  // unchanged until ClearBindings, which must come before it goes.
  void BindBorrowed(int index, const vb::Variant& value);
  // Unbinds every parameter (to NULL).
  void ClearBindings() { sqlite3_clear_bindings(handle_); }
  // Binds a number as the statement's text wrote it.
  void BindNumber(int index, std::string_view text);

  // Steps once: true when a row is there.
  bool Step();
  // Steps to the end of an action statement.
  void Run();
  // Appends the current row's first `width` values to `rows` (a blob's
  // bytes as text).
  void AppendRow(ReadRows& rows, int width) const;
  sqlite3_int64 ReadInteger(int column) const { return sqlite3_column_int64(handle_, column); }

  // How many values the last full read through this statement gave: what
  // the next one reserves room for (a page's rows are read page after page).
  std::size_t values_last_read = 0;
  std::size_t text_bytes_last_read = 0;

 private:
  [[noreturn]] void Fail(int result) const;

  sqlite3* connection_;
  sqlite3_stmt* handle_ = nullptr;
};

}  // namespace seluvorne::db
