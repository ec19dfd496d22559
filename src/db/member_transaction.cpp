// A member's rows committed together, or up to the row that failed.

#include "seluvorne/member_transaction.h"

#include <sqlite3.h>

#include "states.h"

namespace seluvorne::dao {

namespace {

bool InTransaction(db::Connection& connection) {
  return sqlite3_get_autocommit(connection.sqlite().getHandle()) == 0;
}

}  // namespace

MemberTransaction::MemberTransaction(Database& database) {
  db::Connection& connection = database.state_->Use();
  if (InTransaction(connection)) return;  // joins the member that began it
  // IMMEDIATE takes the write lock now, under the busy timeout, so that no
  // row of the member can meet another process's lock halfway.
  db::Guarded(connection.shown_path(), [&] { connection.sqlite().exec("BEGIN IMMEDIATE"); });
  connection_ = database.state_->connection;
}

MemberTransaction::~MemberTransaction() {
  if (!connection_) return;
  // An error is passing: what the member did before it stays, as it would
  // with a commit per row. A commit that fails now cannot be reported; the
  // rows are rolled back rather than left pending on the shared connection.
  try {
    if (InTransaction(*connection_)) connection_->sqlite().exec("COMMIT");
  } catch (...) {
    try {
      if (InTransaction(*connection_)) connection_->sqlite().exec("ROLLBACK");
    } catch (...) {
    }
  }
}

void MemberTransaction::Commit() {
  if (!connection_) return;
  const std::shared_ptr<db::Connection> connection = std::move(connection_);
  if (!InTransaction(*connection)) return;  // the engine ended it on a failure
  try {
    db::Guarded(connection->shown_path(), [&] { connection->sqlite().exec("COMMIT"); });
  } catch (...) {
    if (InTransaction(*connection)) connection->sqlite().exec("ROLLBACK");
    throw;
  }
}

}  // namespace seluvorne::dao
