#include "dialect.h"

#include <vector>

#include "seluvorne/error.h"
#include "seluvorne/member_table.h"

namespace seluvorne::db {

namespace {

struct Token {
  enum Kind { Word, QuotedName, Number, Other } kind;
  std::size_t begin, end;  // the token's bytes in the statement
  std::string name;        // a word, or a quoted name without its quotes
};

bool IsDigit(unsigned char c) {
  return c >= '0' && c <= '9';
}

bool IsWordByte(unsigned char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_' ||
         c == '$' || c >= 0x80;
}

// The length of the number at the start of `text` (12, 2.5, .5, 1e3), or 0.
std::size_t NumberLength(std::string_view text) {
  std::size_t i = 0;
  while (i < text.size() && IsDigit(text[i]))
    ++i;
  std::size_t whole = i;
  if (i < text.size() && text[i] == '.') {
    ++i;
    while (i < text.size() && IsDigit(text[i]))
      ++i;
  }
  if (i == 0 || (whole == 0 && i == 1)) return 0;
  if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
    std::size_t exponent = i + 1;
    if (exponent < text.size() && (text[exponent] == '+' || text[exponent] == '-')) ++exponent;
    if (exponent < text.size() && IsDigit(text[exponent])) {
      i = exponent;
      while (i < text.size() && IsDigit(text[i]))
        ++i;
    }
  }
  // "1abc" or "0x1F" is no plain number.
  if (i < text.size() && IsWordByte(text[i])) return 0;
  return i;
}

// Splits the statement into words, quoted names ("x", [x], `x`), numbers and
// other tokens (text literals, punctuation); blanks and comments are skipped.
std::vector<Token> Tokens(std::string_view sql) {
  std::vector<Token> tokens;
  std::size_t i = 0;
  while (i < sql.size()) {
    unsigned char c = sql[i];
    if (c == ' ' || c == '\t' || c == '\r' || c == '\n') {
      ++i;
    } else if (sql.substr(i, 2) == "--") {
      i = sql.find('\n', i);
      if (i == std::string_view::npos) i = sql.size();
    } else if (sql.substr(i, 2) == "/*") {
      std::size_t close = sql.find("*/", i + 2);
      i = close == std::string_view::npos ? sql.size() : close + 2;
    } else if (std::size_t length = NumberLength(sql.substr(i))) {
      tokens.push_back({Token::Number, i, i + length, std::string(sql.substr(i, length))});
      i += length;
    } else if (IsWordByte(c)) {
      std::size_t begin = i;
      while (i < sql.size() && IsWordByte(sql[i]))
        ++i;
      tokens.push_back({Token::Word, begin, i, std::string(sql.substr(begin, i - begin))});
    } else if (c == '"' || c == '[' || c == '`' || c == '\'') {
      char close = c == '[' ? ']' : static_cast<char>(c);
      std::size_t begin = i++;
      std::string content;
      while (i < sql.size()) {
        if (sql[i] == close) {
          if (close != ']' && i + 1 < sql.size() && sql[i + 1] == close) {
            content += close;  // a doubled quote stands for itself
            i += 2;
            continue;
          }
          ++i;
          break;
        }
        content += sql[i++];
      }
      tokens.push_back({c == '\'' ? Token::Other : Token::QuotedName, begin, i, content});
    } else {
      tokens.push_back({Token::Other, i, i + 1, std::string(1, static_cast<char>(c))});
      ++i;
    }
  }
  return tokens;
}

bool IsKeyword(const Token& token, std::string_view keyword) {
  return token.kind == Token::Word && detail::NameEqual{}(token.name, keyword);
}

// Whether the token after a table name gives it an alias (FROM t x, FROM t AS x).
bool IsAlias(const std::vector<Token>& tokens, std::size_t i) {
  if (i >= tokens.size()) return false;
  const Token& token = tokens[i];
  if (token.kind == Token::QuotedName) return true;
  if (token.kind != Token::Word) return false;
  for (std::string_view keyword :
       {"WHERE",     "GROUP",   "ORDER", "HAVING",    "LIMIT",  "UNION",  "EXCEPT",
        "INTERSECT", "JOIN",    "INNER", "LEFT",      "RIGHT",  "FULL",   "CROSS",
        "NATURAL",   "OUTER",   "ON",    "USING",     "SET",    "VALUES", "DEFAULT",
        "SELECT",    "INDEXED", "NOT",   "RETURNING", "WINDOW", "WITH"})
    if (IsKeyword(token, keyword)) return false;
  return true;
}

// The names a leading WITH gives its common table expressions
// (WITH p AS (...), q(n) AS (...) ...): tables of the statement, not of the
// catalogue.
std::vector<std::string> CommonTableNames(const std::vector<Token>& tokens) {
  std::vector<std::string> names;
  if (!IsKeyword(tokens[0], "WITH")) return names;
  std::size_t i = 1;
  if (i < tokens.size() && IsKeyword(tokens[i], "RECURSIVE")) ++i;
  auto skip_parentheses = [&] {
    if (i >= tokens.size() || tokens[i].name != "(") return;
    for (int depth = 0; i < tokens.size(); ++i) {
      if (tokens[i].kind != Token::Other) continue;
      if (tokens[i].name == "(") ++depth;
      if (tokens[i].name == ")" && --depth == 0) break;
    }
    ++i;
  };
  while (i < tokens.size() &&
         (tokens[i].kind == Token::Word || tokens[i].kind == Token::QuotedName)) {
    names.push_back(tokens[i++].name);
    skip_parentheses();  // the column list
    if (i < tokens.size() && IsKeyword(tokens[i], "AS")) ++i;
    if (i < tokens.size() && (IsKeyword(tokens[i], "MATERIALIZED") || IsKeyword(tokens[i], "NOT")))
      ++i;
    if (i < tokens.size() && IsKeyword(tokens[i], "MATERIALIZED")) ++i;
    skip_parentheses();  // the query
    if (i >= tokens.size() || tokens[i].name != ",") break;
    ++i;
  }
  return names;
}

}  // namespace

Translation TranslateStatement(std::string_view sql, const Catalogue& catalogue) {
  std::vector<Token> tokens = Tokens(sql);
  if (tokens.empty()) Raise(errc::kSyntaxError, "(empty statement)");
  Translation translation;
  if (tokens[0].kind == Token::Word) translation.first_word = tokens[0].name;
  int tables_named = 0;
  bool several_rows_per_row = false;  // a join, grouping, DISTINCT or UNION
  std::size_t copied = 0;             // bytes of `sql` already in the translation
  auto replace = [&](const Token& token, std::string_view with) {
    translation.text.append(sql.substr(copied, token.begin - copied)).append(with);
    copied = token.end;
  };

  // A table is named after FROM, JOIN, UPDATE or INTO, and after a comma of
  // a FROM list (FROM a, b x, c).
  bool expect_table = false, in_from_list = false, ordering = false;
  const bool writes = IsKeyword(tokens[0], "DELETE") || IsKeyword(tokens[0], "UPDATE") ||
                      IsKeyword(tokens[0], "INSERT") || IsKeyword(tokens[0], "REPLACE");
  const std::vector<std::string> common_tables = CommonTableNames(tokens);
  auto is_common_table = [&](std::string_view name) {
    for (const std::string& common : common_tables)
      if (detail::NameEqual{}(common, name)) return true;
    return false;
  };
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    const Token& token = tokens[i];
    if (token.kind == Token::Other && token.name == ";") {
      for (std::size_t rest = i + 1; rest < tokens.size(); ++rest)
        if (tokens[rest].name != ";") Raise(errc::kTextAfterStatement);
      break;
    }
    if (token.name == "*" && i > 0 && IsKeyword(tokens[i - 1], "DELETE") && i + 1 < tokens.size() &&
        IsKeyword(tokens[i + 1], "FROM")) {
      replace(token, "");
      continue;
    }
    if (token.kind == Token::Number && !ordering) {
      replace(token, "?");
      translation.numbers.push_back(token.name);
      continue;
    }
    if (expect_table && (token.kind == Token::Word || token.kind == Token::QuotedName) &&
        is_common_table(token.name)) {
      expect_table = false;
      several_rows_per_row = true;  // rows of a query, not of one table
      continue;
    }
    if (expect_table && (token.kind == Token::Word || token.kind == Token::QuotedName)) {
      expect_table = false;
      std::shared_ptr<const TableDefinition> table = catalogue.Find(token.name);
      if (!table) Raise(errc::kTableNotFound, token.name);
      if (table->system && writes) Raise(errc::kReadOnly, "(" + table->name + ")");
      // A table stored under another name keeps the name the statement
      // gave it, for the columns qualified with it (spantop.X).
      std::string stored = QuoteIdentifier(table->stored_name);
      if (!detail::NameEqual{}(table->stored_name, token.name) && !IsAlias(tokens, i + 1))
        stored += " AS " + QuoteIdentifier(token.name);
      replace(token, stored);
      if (++tables_named == 1)
        translation.table = table;
      else if (translation.table != table)
        translation.table = nullptr;
      continue;
    }
    expect_table = false;
    for (std::string_view keyword : {"JOIN", "GROUP", "DISTINCT", "UNION", "HAVING"})
      if (IsKeyword(token, keyword)) several_rows_per_row = true;
    if (IsKeyword(token, "ORDER") || IsKeyword(token, "GROUP"))
      ordering = true;
    else if (IsKeyword(token, "HAVING") || IsKeyword(token, "LIMIT") || IsKeyword(token, "UNION"))
      ordering = false;
    if (IsKeyword(token, "FROM") || IsKeyword(token, "JOIN")) {
      expect_table = true;
      in_from_list = true;
    } else if (IsKeyword(token, "UPDATE") || IsKeyword(token, "INTO")) {
      expect_table = true;
    } else if (in_from_list && token.name == ",") {
      expect_table = true;
      several_rows_per_row = true;
    } else if (token.kind == Token::Other || IsKeyword(token, "WHERE") ||
               IsKeyword(token, "GROUP") || IsKeyword(token, "ORDER") || IsKeyword(token, "ON") ||
               IsKeyword(token, "UNION") || IsKeyword(token, "LIMIT")) {
      in_from_list = false;
    }
  }
  translation.text.append(sql.substr(copied));
  if (several_rows_per_row) translation.table = nullptr;
  return translation;
}

}  // namespace seluvorne::db
