// What a caller's statement may do.
//
// Execute and OpenRecordset take statements from the suite's programs and
// from scripts. They may read and change rows of the user tables, nothing
// more: transaction control would swallow every later write of the process,
// a PRAGMA changes durability for every handle, DDL would leave TableDefs
// untrue, and the catalogue tables must stay as the engine wrote them.
//
// SQLite's authorizer is the enforcement point: it sees every action a
// statement would take, inside WITH, subqueries and triggers too, so nothing
// depends on reading the text. Statements the engine prepares for itself are
// not checked.
#pragma once

#include <sqlite3.h>

#include <memory>
#include <optional>
#include <string>

#include "statement.h"

namespace seluvorne::db {

// How a caller's statement is to be run, from its first word.
enum class StatementKind { Select, Action, Other };
StatementKind ClassifyStatement(std::string_view first_word);

class StatementGuard {
 public:
  // Installs the authorizer on `connection` and turns SQLite's fallback of
  // reading a "double-quoted" unknown name as a text off, so that a
  // misspelt field name is an error rather than a constant.
  explicit StatementGuard(sqlite3* connection);
  ~StatementGuard();
  StatementGuard(const StatementGuard&) = delete;
  StatementGuard& operator=(const StatementGuard&) = delete;

  // Prepares a caller's statement. Raises 3129 for transaction control,
  // PRAGMA, ATTACH, DETACH, VACUUM-like maintenance and DDL, and 3027 for a
  // statement that would change a catalogue table; SQLite's own rejections
  // are thrown as they come.
  std::unique_ptr<PreparedStatement> Prepare(const std::string& sql);

 private:
  struct Refusal {
    int number;
    std::string detail;
  };
  static int Authorize(void* self, int action, const char* first, const char* second,
                       const char* database, const char* trigger);
  int Judge(int action, const char* first, const char* second);

  sqlite3* connection_;
  bool checking_ = false;
  std::optional<Refusal> refusal_;
};

}  // namespace seluvorne::db
