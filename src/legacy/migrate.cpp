// Migrating a floor folder's legacy Jet files to the native format
// (include/seluvorne/legacy.h): convert each to a copy beside it, check the
// copy against what the reader read, then replace the originals under the
// journal of migration_journal.h.

#include <SQLiteCpp/Statement.h>

#include <algorithm>
#include <fstream>

#include "db/connection.h"
#include "db/file_format.h"
#include "db/legacy_tables.h"
#include "jet_reader.h"
#include "migration_journal.h"
#include "seluvorne/dao.h"
#include "seluvorne/error.h"
#include "seluvorne/legacy.h"
#include "seluvorne/paths.h"

namespace seluvorne::legacy {

namespace {

constexpr const char* kReportFile = "seluvorne-migration-report.txt";

[[noreturn]] void Mismatch(const std::filesystem::path& file, const std::string& table,
                           const std::string& what) {
  Error error = MakeError(errc::kUnrecognizedFormat, file.filename().string());
  throw Error(error.number, error.source,
              error.description + " Migration stopped at table " + table + ": " + what +
                  ". The floor is unchanged.");
}

// An error raised while working on `file`, with the file named.
Error Naming(const Error& error, const std::filesystem::path& file) {
  return Error(error.number, error.source,
               error.description + " (migrating " + file.filename().string() + ")");
}

// Whether a database file of the floor is a legacy one; raises 3343 saying
// what it is for a file that is neither legacy nor ours, which no migration
// can make a floor of.
bool IsLegacyFile(const std::filesystem::path& path) {
  try {
    return db::Connection::KindOf(path, path.string()) == db::FileKind::Jet;
  } catch (const Error& error) {
    if (error.number != errc::kUnrecognizedFormat) throw;
    std::error_code ignored;
    RaiseExplained(errc::kUnrecognizedFormat, path.string(),
                   std::string(std::filesystem::file_size(path, ignored) == 0 ? "an empty file"
                                                                              : "no database") +
                       ": neither a legacy Jet file nor a file of this library; nothing was "
                       "migrated");
  }
}

// The database files of the folder, by name: "*.mdb" in any letter case.
std::vector<std::string> DatabaseFiles(const std::filesystem::path& folder) {
  std::vector<std::string> names;
  std::error_code ignored;
  for (const auto& entry : std::filesystem::directory_iterator(folder, ignored)) {
    std::string name = entry.path().filename().string();
    std::string lower = name;
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    if (lower.ends_with(".mdb") && entry.is_regular_file(ignored)) names.push_back(name);
  }
  std::sort(names.begin(), names.end());
  return names;
}

// Reads the converted copy back and compares it with the reader's stream:
// the same tables and fields in order, and every row equal.
void CheckCopy(const std::filesystem::path& file, const JetFile& jet, FileReport& report) {
  std::filesystem::path copy = ConvertedCopy(file);
  auto connection = db::Connection::Open(copy, copy.string());
  std::vector<std::shared_ptr<const db::TableDefinition>> tables;
  for (const auto& table : connection->catalogue().tables())
    if (!table->system) tables.push_back(table);
  if (tables.size() != jet.tables.size())
    Mismatch(file, "(all)", "the copy holds " + std::to_string(tables.size()) + " tables");

  for (std::size_t t = 0; t < tables.size(); ++t) {
    const db::TableDefinition& stored = *tables[t];
    const JetTable& read = jet.tables[t];
    if (stored.name != read.name) Mismatch(file, read.name, "the copy names it " + stored.name);
    if (stored.fields.size() != read.fields.size()) Mismatch(file, read.name, "field count");
    std::string select = "SELECT ";
    for (std::size_t f = 0; f < read.fields.size(); ++f) {
      const db::FieldDefinition& field = stored.fields[f];
      const JetField& source = read.fields[f];
      if (field.name != source.name || field.type != source.type ||
          (source.type == dao::dbText && field.size != source.size) ||
          field.default_value != source.default_value.value_or("") ||
          field.allow_zero_length != source.allow_zero_length)
        Mismatch(file, read.name, "field " + source.name + " differs");
      select += (f > 0 ? ", " : "") + db::QuoteIdentifier(field.name);
    }
    select += " FROM " + db::QuoteIdentifier(stored.stored_name) + " ORDER BY rowid";

    std::int64_t rows = 0;
    db::Guarded(copy.string(), [&] {
      SQLite::Statement query(connection->sqlite(), select);
      while (query.executeStep()) {
        if (rows >= static_cast<std::int64_t>(read.rows.size()))
          Mismatch(file, read.name, "the copy has more rows");
        const std::vector<Cell>& expected = read.rows[static_cast<std::size_t>(rows)];
        for (int f = 0; f < query.getColumnCount(); ++f) {
          SQLite::Column value = query.getColumn(f);
          const Cell& cell = expected[static_cast<std::size_t>(f)];
          bool equal = !cell ? value.isNull()
                       : read.fields[static_cast<std::size_t>(f)].type == dao::dbInteger
                           ? value.isInteger() && value.getInt64() == std::stoll(*cell)
                           : value.isText() && value.getString() == *cell;
          if (!equal) Mismatch(file, read.name, "row " + std::to_string(rows + 1) + " differs");
        }
        ++rows;
      }
    });
    if (rows != static_cast<std::int64_t>(read.rows.size()))
      Mismatch(file, read.name,
               "the copy has " + std::to_string(rows) + " of " + std::to_string(read.rows.size()) +
                   " rows");
    report.tables.push_back(
        {read.name, read.recorded_rows, static_cast<std::int64_t>(read.rows.size()), rows});
  }
}

// Converts one legacy file to its checked copy.
FileReport ConvertFile(const std::filesystem::path& file, bool salvage) {
  FileReport report{file.filename().string(), true, {}};
  if (std::filesystem::exists(KeptOriginal(file)))
    Raise(errc::kDatabaseExists,
          "(" + KeptOriginal(file).filename().string() + " is in the way of keeping the original)");
  JetFile jet = ReadJetFile(file, file.string(), salvage);
  std::filesystem::path copy = ConvertedCopy(file);
  RemoveConvertedCopy(file);
  {
    auto connection = db::Connection::Create(copy, copy.string(), dao::dbLangJapanese);
    db::CopyJetTables(*connection, jet);
  }
  // Closing the last connection folds the write-ahead log into the file;
  // a log left beside the copy would not follow it when it is renamed.
  for (const auto& companion : db::CompanionFiles(copy))
    if (std::filesystem::exists(companion))
      Mismatch(file, "(all)", "the copy's log was not folded in");
  CheckCopy(file, jet, report);
  StepDone();
  return report;
}

void WriteReportFile(const std::filesystem::path& path, const MigrationReport& report) {
  std::ofstream out(path, std::ios::trunc);
  out << "Migration of " << report.folder << (report.salvage ? " (salvage)" : "") << "\n";
  for (const FileReport& file : report.files) {
    out << file.file << (file.migrated ? "" : ": already native, left as it is") << "\n";
    for (const TableReport& table : file.tables) {
      out << "  " << table.table << ": recorded " << table.recorded << ", read " << table.read
          << ", written " << table.written;
      if (table.written < table.recorded) out << ", LOST " << table.recorded - table.written;
      out << "\n";
    }
  }
  if (!out) Raise(errc::kPathFileAccess, path.string());
}

}  // namespace

MigrationReport MigrateFloor(const std::string& folder_text, bool salvage) {
  std::filesystem::path folder = NativePath(folder_text);
  std::error_code ignored;
  if (!std::filesystem::is_directory(folder, ignored)) Raise(errc::kPathNotFound, folder_text);
  StartCountingSteps();
  RecoverFolder(folder);

  MigrationReport report{folder_text, salvage, {}, {}};
  std::vector<std::string> legacy_files;
  // Every file judged before any is converted.
  std::vector<std::string> names = DatabaseFiles(folder);
  std::vector<bool> legacy;
  for (const std::string& name : names)
    legacy.push_back(IsLegacyFile(folder / name));
  try {
    for (std::size_t i = 0; i < names.size(); ++i) {
      const std::string& name = names[i];
      std::filesystem::path file = folder / name;
      if (!legacy[i]) {
        report.files.push_back({name, false, {}});
        continue;
      }
      legacy_files.push_back(name);
      try {
        report.files.push_back(ConvertFile(file, salvage));
      } catch (const Error& error) {
        throw Naming(error, file);
      }
    }
    if (legacy_files.empty()) return report;
    if (salvage) {
      report.report_file = (folder / kReportFile).string();
      WriteReportFile(report.report_file, report);
    }
    WriteJournal(folder, legacy_files);
  } catch (...) {
    // Before the journal is in place nothing of the floor has changed yet.
    for (const std::string& name : legacy_files)
      RemoveConvertedCopy(folder / name);
    if (!report.report_file.empty()) std::filesystem::remove(report.report_file, ignored);
    throw;
  }
  FinishReplacements(folder, legacy_files);
  return report;
}

}  // namespace seluvorne::legacy
