// Whole-file checks for tools: the file's kind, and SQLite's integrity check
// on a read-only connection of its own (it takes no write lock, so a floor
// can be checked while others work on it).

#include "seluvorne/integrity.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>

#include "connection.h"
#include "engine_error.h"
#include "file_format.h"
#include "seluvorne/error.h"

namespace seluvorne::files {

DatabaseFormat FormatOf(const std::filesystem::path& file) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(file, error)) return DatabaseFormat::kMissing;
  try {
    return db::Connection::KindOf(file, file.string()) == db::FileKind::Jet
               ? DatabaseFormat::kLegacy
               : DatabaseFormat::kNative;
  } catch (const Error& error) {
    return error.number == errc::kFileNotFoundDb ? DatabaseFormat::kMissing
                                                 : DatabaseFormat::kOther;
  }
}

std::vector<std::string> IntegrityProblems(const std::filesystem::path& file) {
  const std::string shown = file.string();
  if (FormatOf(file) == DatabaseFormat::kMissing) throw MakeError(errc::kFileNotFoundDb, shown);
  if (db::Connection::KindOf(file, shown) == db::FileKind::Jet) {
    Error error = MakeError(errc::kUnrecognizedFormat, shown);
    throw Error(error.number, error.source,
                error.description + " (a legacy Jet file: migrating it checks every row)");
  }
  std::vector<std::string> problems;
  try {
    SQLite::Database database(shown, SQLite::OPEN_READONLY);
    SQLite::Statement check(database, "PRAGMA integrity_check");
    while (check.executeStep()) {
      std::string line = check.getColumn(0).getString();
      if (line != "ok") problems.push_back(std::move(line));
    }
  } catch (const SQLite::Exception& error) {
    problems.push_back(error.what());
  }
  return problems;
}

}  // namespace seluvorne::files
