// Legacy floors: a floor folder whose database files are still the old Jet
// files, converted to the native format with every row checked.
//
//   seluvorne::legacy::MigrationReport report = seluvorne::legacy::MigrateFloor("/floors/3F");
//
// Each legacy file is read through the reader helper, written to a new file
// beside it, read back and compared with what the helper read, table by
// table and row by row, and with the row counts the file's own table
// definitions record. Only when every legacy file of the folder has passed
// are they replaced: the original keeps its name with ".jet" added
// ("SELUVORN.mdb.jet") and the new file takes its name. A journal file in
// the folder makes the replacement finish (or a half-made conversion vanish)
// on the next run if the process dies in the middle.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace seluvorne::legacy {

struct TableReport {
  std::string table;
  std::int64_t recorded = 0;  // rows the legacy file's table definition records
  std::int64_t read = 0;      // rows the reader could read
  std::int64_t written = 0;   // rows the new file holds, checked
};

struct FileReport {
  std::string file;       // its name in the folder
  bool migrated = false;  // false: already native, left as it is
  std::vector<TableReport> tables;
};

struct MigrationReport {
  std::string folder;
  bool salvage = false;
  std::vector<FileReport> files;
  std::string report_file;  // with salvage: the report written beside the floor
};

// Migrates the legacy files of `folder` (backslashes allowed); native files
// are left alone. A failure (a file the reader cannot read whole, a row that
// does not read back equal, a full disk) leaves the folder as it was and
// raises an error that names the file and the table: 3343 for an unreadable
// or mismatching file, 76 for a missing folder, 3204 when "<file>.jet"
// already exists, the engine's errors for failed writes. With `salvage`, a
// table that cannot be read whole migrates with the rows that can be, every
// loss is in the report, and the report is also written beside the floor as
// "seluvorne-migration-report.txt".
MigrationReport MigrateFloor(const std::string& folder, bool salvage = false);

}  // namespace seluvorne::legacy
