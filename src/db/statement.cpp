#include "statement.h"

#include <SQLiteCpp/Exception.h>

#include <cerrno>
#include <cstdlib>
#include <limits>

namespace seluvorne::db {

PreparedStatement::PreparedStatement(sqlite3* connection, const std::string& sql)
    : connection_(connection) {
  const char* tail = nullptr;
  int result = sqlite3_prepare_v2(connection, sql.c_str(), static_cast<int>(sql.size() + 1),
                                  &handle_, &tail);
  if (result != SQLITE_OK) Fail(result);
  if (!handle_) throw SQLite::Exception("empty statement", SQLITE_ERROR);
}

PreparedStatement::~PreparedStatement() {
  sqlite3_finalize(handle_);
}

void PreparedStatement::Fail(int result) const {
  throw SQLite::Exception(connection_, result);
}

void PreparedStatement::Bind(int index, const vb::Variant& value) {
  int result;
  if (const auto* text = value.peek<std::string>())
    result = sqlite3_bind_text(handle_, index, text->data(), static_cast<int>(text->size()),
                               SQLITE_TRANSIENT);
  else if (const auto* small = value.peek<std::int16_t>())
    result = sqlite3_bind_int(handle_, index, *small);
  else if (const auto* large = value.peek<std::int32_t>())
    result = sqlite3_bind_int(handle_, index, *large);
  else if (const auto* real = value.peek<double>())
    result = sqlite3_bind_double(handle_, index, *real);
  else if (const auto* single = value.peek<float>())
    result = sqlite3_bind_double(handle_, index, *single);
  else
    result = sqlite3_bind_null(handle_, index);
  if (result != SQLITE_OK) Fail(result);
}

void PreparedStatement::BindBorrowed(int index, const vb::Variant& value) {
  const auto* text = value.peek<std::string>();
  if (!text) return Bind(index, value);
  int result = sqlite3_bind_text(handle_, index, text->data(), static_cast<int>(text->size()),
                                 SQLITE_STATIC);
  if (result != SQLITE_OK) Fail(result);
}

void PreparedStatement::BindNumber(int index, std::string_view text) {
  std::string number(text);
  errno = 0;
  char* end = nullptr;
  long long integer = std::strtoll(number.c_str(), &end, 10);
  int result = *end == '\0' && errno == 0
                   ? sqlite3_bind_int64(handle_, index, integer)
                   : sqlite3_bind_double(handle_, index, std::strtod(number.c_str(), nullptr));
  if (result != SQLITE_OK) Fail(result);
}

bool PreparedStatement::Step() {
  int result = sqlite3_step(handle_);
  if (result == SQLITE_ROW) return true;
  if (result == SQLITE_DONE) return false;
  sqlite3_reset(handle_);
  Fail(result);
}

void PreparedStatement::Run() {
  while (Step()) {
  }
}

void PreparedStatement::AppendRow(ReadRows& rows, int width) const {
  // One column call per value, then the value's own accessors: each column
  // call of SQLite's checks the statement and its errors again.
  for (int column = 0; column < width; ++column) {
    sqlite3_value* value = sqlite3_column_value(handle_, column);
    switch (sqlite3_value_type(value)) {
      case SQLITE_INTEGER:
        rows.AppendInteger(sqlite3_value_int64(value));
        break;
      case SQLITE_FLOAT:
        rows.AppendReal(sqlite3_value_double(value));
        break;
      case SQLITE_NULL:
        rows.AppendNull();
        break;
      default: {
        const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
        const auto length = static_cast<std::size_t>(sqlite3_value_bytes(value));
        if (!text && length > 0) Fail(SQLITE_NOMEM);
        rows.AppendText(text ? std::string_view(text, length) : std::string_view());
      }
    }
  }
  rows.EndRow();
}

}  // namespace seluvorne::db
