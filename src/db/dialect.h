// The SQL the engine accepts: SQLite's, with the desktop database's
// `DELETE * FROM`, and table names resolved through the catalogue.
//
// The stores send simple statements built from fixed fragments and numbers
// (SELECT * FROM t WHERE PAGE = n;, DELETE * FROM t WHERE ... ;, UPDATE t SET
// ...). Translation rewrites only two things: the `*` of `DELETE * FROM`
// goes, and a table named after FROM (and the commas of its list), JOIN,
// UPDATE or INTO becomes its SQLite table, found by the exact name first and
// then by one that differs only in letter case. And numbers become bound
// parameters, so that statements differing only in their numbers (a page
// number, a span number) share one prepared statement; numbers of ORDER BY
// and GROUP BY (column positions there) stay. Everything else is left to
// SQLite to judge.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue.h"

namespace seluvorne::db {

struct Translation {
  std::string text;                  // the statement for SQLite
  std::vector<std::string> numbers;  // the values of its parameters, in order
  // The table a statement that names exactly one table names, without a
  // join, grouping, DISTINCT or UNION (rows of it a set could add), else null.
  std::shared_ptr<const TableDefinition> table;
  std::string first_word;  // what kind of statement it is (SELECT, DELETE, PRAGMA, ...)
};

// Raises 3078 for a table the catalogue does not know, 3027 for a statement
// that would change a catalogue table, 3142 for text after the statement's
// closing semicolon.
Translation TranslateStatement(std::string_view sql, const Catalogue& catalogue);

}  // namespace seluvorne::db
