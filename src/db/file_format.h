// Recognising a database file before SQLite opens it: ours are SQLite files;
// the suite's legacy floor files are Jet files, which this version does not
// read yet and names as such; anything else is no database.
#pragma once

#include <filesystem>
#include <string_view>

namespace seluvorne::db {

// Raises 3343 unless the file begins with an SQLite header; for a Jet file the
// message says it is a legacy floor file. Whether an SQLite file is whole is
// SQLite's to judge (a healthy file in WAL mode may be shorter than its header
// says while a checkpoint extends it).
void CheckDatabaseFile(const std::filesystem::path& path, std::string_view shown_path);

}  // namespace seluvorne::db
