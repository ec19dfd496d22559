// Debian's SQLite is built with the pre-update hook; its declarations are
// shown only to code that asks for them.
#define SQLITE_ENABLE_PREUPDATE_HOOK 1

#include "write_rules.h"

#include <sqlite3.h>

#include <exception>
#include <limits>

#include "connection.h"
#include "field_rules.h"
#include "seluvorne/error.h"

namespace seluvorne::db {

namespace {

vb::Variant ValueOf(sqlite3_value* value) {
  switch (sqlite3_value_type(value)) {
    case SQLITE_INTEGER: {
      sqlite3_int64 number = sqlite3_value_int64(value);
      if (number >= std::numeric_limits<std::int32_t>::min() &&
          number <= std::numeric_limits<std::int32_t>::max())
        return static_cast<std::int32_t>(number);
      return static_cast<double>(number);
    }
    case SQLITE_FLOAT:
      return sqlite3_value_double(value);
    case SQLITE_NULL:
      return vb::Null;
    default: {
      const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
      return std::string(text ? text : "", static_cast<std::size_t>(sqlite3_value_bytes(value)));
    }
  }
}

// What the hook needs between rows: the tables, and the first broken rule.
struct Watch {
  const Catalogue* catalogue;
  std::exception_ptr broken;
};

void CheckRow(void* context, sqlite3* sqlite, int operation, const char* database,
              const char* table_name, sqlite3_int64, sqlite3_int64) {
  auto* watch = static_cast<Watch*>(context);
  if (watch->broken || (operation != SQLITE_INSERT && operation != SQLITE_UPDATE)) return;
  if (std::string_view(database) != "main") return;
  for (const auto& table : watch->catalogue->tables()) {
    if (table->stored_name != table_name) continue;
    const int columns = sqlite3_preupdate_count(sqlite);
    for (int i = 0; i < columns && i < static_cast<int>(table->fields.size()); ++i) {
      sqlite3_value* value = nullptr;
      if (sqlite3_preupdate_new(sqlite, i, &value) != SQLITE_OK || !value) continue;
      try {
        StoredValue(table->fields[i], ValueOf(value));
      } catch (...) {
        watch->broken = std::current_exception();
        return;
      }
    }
    return;
  }
}

}  // namespace

void RunWithFieldRules(Connection& connection, PreparedStatement& statement) {
  Watch watch{&connection.catalogue(), nullptr};
  SQLite::Database& database = connection.sqlite();
  sqlite3* sqlite = database.getHandle();
  // Whatever fails, no transaction stays open to swallow later writes.
  auto abandon = [&] {
    sqlite3_preupdate_hook(sqlite, nullptr, nullptr);
    if (!sqlite3_get_autocommit(sqlite))
      sqlite3_exec(sqlite, "ROLLBACK", nullptr, nullptr, nullptr);
  };
  Guarded(connection.shown_path(), [&] {
    database.exec("SAVEPOINT execute_statement");
    sqlite3_preupdate_hook(sqlite, &CheckRow, &watch);
    try {
      statement.Run();
      sqlite3_preupdate_hook(sqlite, nullptr, nullptr);
      if (watch.broken) std::rethrow_exception(watch.broken);
      database.exec("RELEASE execute_statement");
    } catch (...) {
      abandon();
      throw;
    }
  });
}

}  // namespace seluvorne::db
