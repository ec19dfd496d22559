// One transaction for a member that writes many rows.
//
// The page writers, the page buffers' write and delete, and the page copies
// add their rows one by one, and their clients expect what a commit per row
// leaves: every row added before an error stays. A MemberTransaction gives
// the same outcome for a fraction of the cost and without half-written pages
// after a crash: its rows are committed together when the member ends, and
// when a row fails, the rows before it are committed before the error goes
// on. A process killed in the middle leaves the file as before the member.
//
//   dao::InMemberTransaction(*db, [&] {
//     ... AddNew / Update, Execute ...
//   });
//
// A member that runs inside another member's transaction on the same file
// joins it: only the outermost commits. Tables are created outside: the
// table creators take their own transaction.
#pragma once

#include <memory>
#include <utility>

#include "seluvorne/dao.h"

namespace seluvorne::db {
class Connection;
}  // namespace seluvorne::db

namespace seluvorne::dao {

class MemberTransaction {
 public:
  // Begins a write transaction on the file of `database` (waiting for
  // another process's lock up to the busy timeout, then 3218), or joins the
  // one under way there. 3420 for a closed handle.
  explicit MemberTransaction(Database& database);
  // Commits what was done, when Commit has not run (an error is passing).
  ~MemberTransaction();
  MemberTransaction(const MemberTransaction&) = delete;
  MemberTransaction& operator=(const MemberTransaction&) = delete;

  // Commits the member's rows; nothing for a joined transaction.
  void Commit();

 private:
  std::shared_ptr<db::Connection> connection_;  // null when joined or done
};

// Runs `body` in a MemberTransaction on `database`.
template <class F>
decltype(auto) InMemberTransaction(Database& database, F&& body) {
  MemberTransaction transaction(database);
  if constexpr (std::is_void_v<decltype(std::forward<F>(body)())>) {
    std::forward<F>(body)();
    transaction.Commit();
  } else {
    auto result = std::forward<F>(body)();
    transaction.Commit();
    return result;
  }
}

}  // namespace seluvorne::dao
