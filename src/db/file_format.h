// Recognising a database file before SQLite opens it: ours are SQLite files;
// the suite's legacy floor files are Jet files, which this version does not
// read yet and names as such; anything else is no database.
#pragma once

#include <filesystem>
#include <string_view>

namespace seluvorne::db {

// Raises 3343 unless the file begins with an SQLite header and is as long as
// that header says. For a Jet file the message says it is a legacy floor file.
void CheckDatabaseFile(const std::filesystem::path& path, std::string_view shown_path);

// Whether the file begins as a Jet file does (the suite's legacy floor files).
bool IsJetFile(const std::filesystem::path& path);

}  // namespace seluvorne::db
