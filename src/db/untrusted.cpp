#include "untrusted.h"

#include <algorithm>
#include <regex>
#include <string_view>

#include "catalogue.h"
#include "seluvorne/error.h"
#include "seluvorne/member_table.h"

namespace seluvorne::db {

namespace {

bool SameName(std::string_view a, std::string_view b) {
  return detail::NameEqual{}(a, b);
}

bool StartsWith(std::string_view text, std::string_view head) {
  return text.size() >= head.size() && SameName(text.substr(0, head.size()), head);
}

// The items of the outermost parenthesised list of a CREATE statement: its
// column definitions and constraints, split at commas outside quotes and
// inner parentheses, blanks trimmed.
std::vector<std::string> ListItems(std::string_view sql) {
  std::vector<std::string> items;
  std::string item;
  int depth = 0;
  char quote = 0;
  for (char c : sql) {
    if (quote) {
      if (c == quote) quote = 0;
    } else if (c == '"' || c == '\'' || c == '`' || c == '[') {
      quote = c == '[' ? ']' : c;
    } else if (c == '(') {
      if (++depth == 1) continue;
    } else if (c == ')') {
      if (--depth == 0) break;
    } else if (c == ',' && depth == 1) {
      items.push_back(item);
      item.clear();
      continue;
    }
    if (depth >= 1) item += c;
  }
  if (!item.empty()) items.push_back(item);
  for (std::string& text : items) {
    text.erase(0, text.find_first_not_of(" \t\r\n"));
    text.erase(text.find_last_not_of(" \t\r\n") + 1);
  }
  return items;
}

// What differs between a table's definition in the file and the one its
// catalogue entry makes, for a person.
std::string DescribeDifference(const TableDefinition& table, const std::string& found) {
  const std::vector<std::string> items = ListItems(found);
  const std::vector<std::string> expected = ListItems(StorageStatement(table));
  std::string detail;
  auto add = [&](const std::string& part) { detail += (detail.empty() ? "" : "; ") + part; };
  for (std::size_t i = 0; i < items.size(); ++i) {
    const std::string& item = items[i];
    if (i < expected.size() && item == expected[i]) continue;
    for (std::string_view constraint : {"CHECK", "UNIQUE", "PRIMARY", "CONSTRAINT", "FOREIGN"})
      if (StartsWith(item, constraint)) {
        add("a constraint the engine did not make: " + item);
        goto next;
      }
    if (i < table.fields.size())
      add("field " + table.fields[i].name + " is declared `" + item + "`, the catalogue's `" +
          expected[i] + "`");
    else
      add("a field the catalogue does not list: " + item);
  next:;
  }
  if (items.size() < table.fields.size()) add("fields the catalogue lists are missing");
  return detail.empty() ? "its definition differs from the catalogue's: " + found : detail;
}

// Whether an index would act on writes: a unique one can refuse rows, a
// partial or expression one evaluates expressions on every row.
bool IndexActs(const std::string& sql) {
  if (StartsWith(sql, "CREATE UNIQUE")) return true;
  // The first parenthesis outside quotes opens the column list, whatever
  // spacing and letter case the statement was written in.
  for (const std::string& column : ListItems(sql))
    if (column.find('(') != std::string::npos) return true;
  const std::size_t close = sql.rfind(')');
  static const std::regex where(R"(\bWHERE\b)", std::regex::icase);
  return close != std::string::npos && std::regex_search(sql.begin() + close, sql.end(), where);
}

// Whether `index` is one of the engine's hidden indexes of `table`.
bool IsHiddenIndex(const TableDefinition& table, const SchemaObject& index) {
  for (std::string_view kind : kHiddenIndexKinds) {
    const std::string base = table.stored_name + "~" + std::string(kind);
    if (!SameName(index.name, base) && !StartsWith(index.name, base + "~")) continue;
    if (index.sql == HiddenIndexStatement(table, kind, index.name)) return true;
  }
  return false;
}

}  // namespace

void DistrustSchema(sqlite3* connection, bool inspecting) {
  sqlite3_db_config(connection, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
  for (int option : {SQLITE_DBCONFIG_TRUSTED_SCHEMA, SQLITE_DBCONFIG_ENABLE_TRIGGER,
                     SQLITE_DBCONFIG_ENABLE_VIEW, SQLITE_DBCONFIG_ENABLE_LOAD_EXTENSION})
    sqlite3_db_config(connection, option, 0, nullptr);
  sqlite3_limit(connection, SQLITE_LIMIT_LENGTH, kMaxValueBytes);
  sqlite3_limit(connection, SQLITE_LIMIT_SQL_LENGTH, kMaxStatementBytes);
  sqlite3_limit(connection, SQLITE_LIMIT_EXPR_DEPTH, kMaxExpressionDepth);
  if (inspecting) return;  // reads any schema SQLite can; keeps its copy (VACUUM INTO) possible
  sqlite3_limit(connection, SQLITE_LIMIT_COLUMN, kMaxColumns);
  sqlite3_limit(connection, SQLITE_LIMIT_ATTACHED, 0);
}

std::vector<ForeignObject> FindForeignObjects(const Catalogue& catalogue,
                                              const std::vector<SchemaObject>& schema) {
  auto engine_table = [&](const std::string& stored) -> const TableDefinition* {
    for (const auto& table : catalogue.tables())
      if (SameName(table->stored_name, stored)) return table.get();
    return nullptr;
  };
  std::vector<ForeignObject> foreign;
  for (const SchemaObject& object : schema) {
    if (StartsWith(object.name, "sqlite_")) continue;  // SQLite's own; constraints show below
    if (object.type == "table") {
      const bool virtual_table = StartsWith(object.sql, "CREATE VIRTUAL");
      if (const TableDefinition* table = engine_table(object.name)) {
        if (virtual_table)
          foreign.push_back({"virtual table", object.name, "in the place of a table", true});
        else if (object.sql != StorageStatement(*table))
          foreign.push_back(
              {"table", object.name, DescribeDifference(*table, object.sql), true, true});
      } else {
        foreign.push_back({virtual_table ? "virtual table" : "table", object.name,
                           "not in the catalogue", false});
      }
    } else if (object.type == "index") {
      const TableDefinition* table = engine_table(object.table);
      if (table && IsHiddenIndex(*table, object)) continue;
      const bool acts = table && IndexActs(object.sql);
      foreign.push_back({"index", object.name,
                         "on " + object.table + (acts ? ", evaluated on every write" : ""), acts});
    } else {
      const bool in_place = object.type == "view" && engine_table(object.name);
      foreign.push_back({object.type, object.name,
                         in_place                   ? "in the place of a table"
                         : object.type == "trigger" ? "on " + object.table + ", never run"
                                                    : "never used",
                         in_place});
    }
  }
  return foreign;
}

void RefuseActingObjects(const std::vector<ForeignObject>& foreign, const std::string& shown_path) {
  auto acting = std::find_if(foreign.begin(), foreign.end(),
                             [](const ForeignObject& object) { return object.acts; });
  if (acting == foreign.end()) return;
  RaiseExplained(errc::kUnrecognizedFormat, shown_path,
                 acting->type + " " + acting->name + ": " + acting->detail +
                     "; the engine did not make it, and `seluvorne check --fix` removes it, "
                     "keeping every row");
}

}  // namespace seluvorne::db
