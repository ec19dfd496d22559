// Whole-file checks for tools: the file's kind, SQLite's integrity check, and
// the schema objects the engine did not make. The checks run on a read-only
// connection of their own (it takes no write lock, so a floor can be checked
// while others work on it); the cleaning holds the file for itself.

#include "seluvorne/integrity.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>
#include <SQLiteCpp/Transaction.h>

#include "catalogue.h"
#include "connection.h"
#include "engine_error.h"
#include "file_format.h"
#include "file_lock.h"
#include "seluvorne/dao.h"
#include "seluvorne/error.h"
#include "untrusted.h"

namespace seluvorne::files {

namespace {

// A connection that inspects `file` under the engine's settings; raises 3024
// for a missing file and 3343 for one that is none of ours.
SQLite::Database Inspect(const std::filesystem::path& file, int flags) {
  const std::string shown = file.string();
  if (FormatOf(file) == DatabaseFormat::kMissing) throw MakeError(errc::kFileNotFoundDb, shown);
  if (db::Connection::KindOf(file, shown) == db::FileKind::Jet)
    RaiseExplained(errc::kUnrecognizedFormat, shown,
                   "a legacy Jet file: migrating it checks every row");
  return db::Guarded(shown, [&] {
    SQLite::Database database(shown, flags, db::Connection::BusyTimeout());
    db::DistrustSchema(database.getHandle(), true);
    return database;
  });
}

const db::TableDefinition& StoredAs(const db::Catalogue& catalogue, const std::string& stored) {
  for (const auto& table : catalogue.tables())
    if (table->stored_name == stored) return *table;
  Raise(errc::kTableNotFound, stored);
}

std::string Line(const db::ForeignObject& object) {
  return object.type + " " + object.name + ": " + object.detail;
}

}  // namespace

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
  SQLite::Database database = Inspect(file, SQLite::OPEN_READONLY);
  std::vector<std::string> problems;
  try {
    SQLite::Statement check(database, "PRAGMA integrity_check");
    while (check.executeStep()) {
      std::string line = check.getColumn(0).getString();
      if (line != "ok") problems.push_back(std::move(line));
    }
  } catch (const SQLite::Exception& error) {
    problems.push_back(error.what());
  }
  // Texts past their field's size, or past what the engine reads at all.
  std::int64_t version = 0;
  const db::Catalogue catalogue = db::Catalogue::Load(database, file.string(), version);
  for (const auto& table : catalogue.tables())
    for (const db::FieldDefinition& field : table->fields) {
      if (field.type != dao::dbText) continue;
      const std::string where = table->name + "." + field.name;
      try {
        SQLite::Statement longer(database,
                                 "SELECT COUNT(*) FROM " + db::QuoteIdentifier(table->stored_name) +
                                     " WHERE length(" + db::QuoteIdentifier(field.name) + ") > ?");
        longer.bind(1, field.size);
        longer.executeStep();
        if (const int count = longer.getColumn(0).getInt())
          problems.push_back(where + ": " + std::to_string(count) + " text" +
                             (count == 1 ? "" : "s") + " longer than the field's " +
                             std::to_string(field.size) + " characters");
      } catch (const SQLite::Exception& error) {
        problems.push_back(where + ": " +
                           (error.getErrorCode() == SQLITE_TOOBIG
                                ? "a value larger than any floor holds"
                                : error.what()));
      }
    }
  return problems;
}

std::vector<std::string> ForeignObjects(const std::filesystem::path& file) {
  SQLite::Database database = Inspect(file, SQLite::OPEN_READONLY);
  std::int64_t version = 0;
  const db::Catalogue catalogue = db::Catalogue::Load(database, file.string(), version);
  std::vector<std::string> lines;
  for (const db::ForeignObject& object : catalogue.foreign())
    lines.push_back(Line(object));
  return lines;
}

std::vector<std::string> RemoveForeignObjects(const std::filesystem::path& file) {
  const std::string shown = file.string();
  const std::filesystem::path backup = shown + ".bak";
  if (db::Connection::IsOpen(file)) Raise(errc::kPermissionDenied, "(" + shown + " is open)");
  db::FileLock in_use(file);
  if (!in_use.is_open() || !in_use.TryExclusive())
    Raise(errc::kPermissionDenied, "(" + shown + " is open in another program)");
  std::vector<std::string> removed;
  {
    SQLite::Database database = Inspect(file, SQLite::OPEN_READWRITE);
    db::Guarded(shown, [&] {
      std::int64_t version = 0;
      const db::Catalogue catalogue = db::Catalogue::Load(database, shown, version);
      if (catalogue.foreign().empty()) return;
      if (std::filesystem::exists(backup)) Raise(errc::kDatabaseExists, backup.string());
      SQLite::Statement keep(database, "VACUUM INTO ?");
      keep.bind(1, backup.string());
      keep.exec();
      SQLite::Transaction transaction(database, SQLite::TransactionBehavior::IMMEDIATE);
      // A virtual table takes its shadow tables with it: those go first.
      for (bool shadows_first : {true, false})
        for (const db::ForeignObject& object : catalogue.foreign()) {
          if ((object.type == "virtual table") != shadows_first) continue;
          SQLite::Statement exists(database, "SELECT COUNT(*) FROM sqlite_schema WHERE name = ?");
          exists.bind(1, object.name);
          exists.executeStep();
          const bool gone = exists.getColumn(0).getInt() == 0;
          exists.reset();  // no read open on the schema while it changes
          if (!object.changed_table && gone) continue;
          if (object.changed_table)
            db::Catalogue::RebuildStorage(database, StoredAs(catalogue, object.name));
          else
            database.exec("DROP " +
                          std::string(object.type == "virtual table" ? "table" : object.type) +
                          " " + db::QuoteIdentifier(object.name));
          removed.push_back(Line(object));
        }
      transaction.commit();
    });
  }
  return removed;
}

}  // namespace seluvorne::files
