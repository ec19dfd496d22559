// The field rules for rows an action statement writes.
//
// Update checks each value of a new row before it is stored; an INSERT or
// UPDATE given to Execute must meet the same rules (3349, 3421, 3163, 3315).
// Its values are SQL expressions, known only as SQLite computes them, so the
// check watches the rows on their way into the table (SQLite's pre-update
// hook) and the statement runs inside a savepoint that is rolled back when a
// row breaks a rule: the statement changes everything or nothing.
#pragma once

#include "catalogue.h"
#include "statement.h"

namespace seluvorne::db {

class Connection;

// Runs an action statement as one transaction; raises the first field rule a
// row breaks, leaving the tables as they were.
void RunWithFieldRules(Connection& connection, PreparedStatement& statement);

}  // namespace seluvorne::db
