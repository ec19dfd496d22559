// Recognising a database file before SQLite opens it: ours are SQLite files;
// the suite's legacy floor files are Jet files, which open read-only through
// the reader helper; anything else is no database.
#pragma once

#include <filesystem>
#include <string_view>

namespace seluvorne::db {

enum class FileKind { Native, Jet };

// Whether the file is one of ours or a legacy Jet file (by its header).
// Raises 3343 for anything else, 3024 when the file is gone. It reads
// through a descriptor of its own, whose close drops the locks SQLite holds
// on the file in this process: only for a file no connection here has open. Whether an SQLite file
// is whole is SQLite's to judge (a healthy file in WAL mode may be shorter than its header says
// while a checkpoint extends it).
FileKind CheckDatabaseFile(const std::filesystem::path& path, std::string_view shown_path);

}  // namespace seluvorne::db
