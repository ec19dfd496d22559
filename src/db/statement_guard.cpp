#include "statement_guard.h"

#include <SQLiteCpp/Exception.h>

#include "seluvorne/error.h"
#include "seluvorne/member_table.h"

namespace seluvorne::db {

namespace {

bool SameName(std::string_view a, std::string_view b) {
  return detail::NameEqual{}(a, b);
}

// The engine's catalogue tables.
bool IsCatalogueTable(const char* name) {
  if (!name) return false;
  std::string_view table(name);
  return SameName(table, "MSysProperties") || SameName(table, "MSysTables") ||
         SameName(table, "MSysFields");
}

}  // namespace

StatementKind ClassifyStatement(std::string_view first_word) {
  if (SameName(first_word, "SELECT") || SameName(first_word, "WITH"))
    return StatementKind::Select;  // WITH may lead an action too; its columns tell
  for (std::string_view action : {"DELETE", "INSERT", "UPDATE", "REPLACE"})
    if (SameName(first_word, action)) return StatementKind::Action;
  return StatementKind::Other;
}

StatementGuard::StatementGuard(sqlite3* connection) : connection_(connection) {
  sqlite3_db_config(connection_, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
  sqlite3_db_config(connection_, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
  sqlite3_set_authorizer(connection_, &StatementGuard::Authorize, this);
}

StatementGuard::~StatementGuard() {
  sqlite3_set_authorizer(connection_, nullptr, nullptr);
}

std::unique_ptr<PreparedStatement> StatementGuard::Prepare(const std::string& sql) {
  refusal_.reset();
  checking_ = true;
  try {
    auto statement = std::make_unique<PreparedStatement>(connection_, sql);
    checking_ = false;
    return statement;
  } catch (const SQLite::Exception&) {
    checking_ = false;
    if (refusal_) Raise(refusal_->number, refusal_->detail);
    throw;
  }
}

int StatementGuard::Authorize(void* self, int action, const char* first, const char* second,
                              const char*, const char*) {
  auto* guard = static_cast<StatementGuard*>(self);
  if (!guard->checking_) return SQLITE_OK;  // the engine's own statement, or a re-prepare
  return guard->Judge(action, first, second);
}

int StatementGuard::Judge(int action, const char* first, const char* second) {
  auto refuse = [&](int number, std::string detail) {
    if (!refusal_) refusal_ = Refusal{number, std::move(detail)};
    return SQLITE_DENY;
  };
  switch (action) {
    case SQLITE_SELECT:
    case SQLITE_READ:
    case SQLITE_FUNCTION:
    case SQLITE_RECURSIVE:
      return SQLITE_OK;
    case SQLITE_INSERT:
    case SQLITE_UPDATE:
    case SQLITE_DELETE:
      // SQLite's own schema table is written only by DDL, which is judged
      // on its own action below.
      if (IsCatalogueTable(first)) return refuse(errc::kReadOnly, "(" + std::string(first) + ")");
      return SQLITE_OK;
    case SQLITE_TRANSACTION:
    case SQLITE_SAVEPOINT:
      return refuse(errc::kInvalidSqlStatement, "(transactions are not supported)");
    case SQLITE_PRAGMA:
      return refuse(errc::kInvalidSqlStatement, "(PRAGMA " + std::string(first ? first : "") + ")");
    case SQLITE_ATTACH:
    case SQLITE_DETACH:
      return refuse(errc::kInvalidSqlStatement, "(ATTACH and DETACH are not supported)");
    case SQLITE_ALTER_TABLE:
      if (IsCatalogueTable(second)) return refuse(errc::kReadOnly, "(" + std::string(second) + ")");
      return refuse(errc::kInvalidSqlStatement, "(tables are made with TableDefs.Append)");
    case SQLITE_DROP_TABLE:
    case SQLITE_DROP_INDEX:
      if (IsCatalogueTable(first) || IsCatalogueTable(second))
        return refuse(errc::kReadOnly, "(a catalogue table)");
      return refuse(errc::kInvalidSqlStatement, "(tables are made with TableDefs.Append)");
    case SQLITE_REINDEX:
    case SQLITE_ANALYZE:
      return refuse(errc::kInvalidSqlStatement, "(maintenance statements are not supported)");
    default:  // other DDL: views, triggers, indexes, virtual tables
      return refuse(errc::kInvalidSqlStatement, "(tables are made with TableDefs.Append)");
  }
}

}  // namespace seluvorne::db
