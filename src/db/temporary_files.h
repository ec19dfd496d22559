// Files built under a temporary name beside the one they will take.
//
// A creation or a copy writes "<name><mark><pid>-<n>" in the destination's
// folder and puts it in place only when it is whole, so no process ever sees
// a file half made. While it works, the writer holds the temporary file's
// exclusive in-use lock (FileLock); that is how the next writer in the folder
// tells a file in progress from one a killed writer left behind.
#pragma once

#include <filesystem>
#include <string_view>

namespace seluvorne::db {

// A name no other writer of this or any process uses.
std::filesystem::path TemporaryName(const std::filesystem::path& path, std::string_view mark);

// Removes the temporary files for `path` whose writer is gone: none holds
// their lock, and they are older than a minute (a writer may not have locked
// a file it has just made).
void ClearAbandoned(const std::filesystem::path& path, std::string_view mark);

// Removes the file and the log, index and journal SQLite may have left beside it.
void RemoveWithCompanions(const std::filesystem::path& path);

}  // namespace seluvorne::db
