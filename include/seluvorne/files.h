// The file operations the stores share: existence, delete and copy of the
// files of a floor folder. Paths are interface texts (backslashes allowed).
//
// Database files get the care their engine needs: one that this process
// holds open cannot be deleted (70), as on the original platform; the files
// SQLite keeps beside a database go with it; and a database is copied through
// SQLite, so that the copy holds every committed row even while the file is
// open and its newest rows are still in the write-ahead log.
#pragma once

#include <string_view>

namespace seluvorne::files {

bool FileExists(std::string_view path);
bool FolderExists(std::string_view path);

// Raises 76 when the folder is missing, 53 when the file is, 70 when it is a
// database file this process holds open or the file system refuses.
void DeleteFile(std::string_view path);

// Copies `source` over `destination` (replaced when it exists). Raises 53 for
// a missing source, 76 for a missing destination folder, 70 when the
// destination is a database file this process holds open.
void CopyFile(std::string_view source, std::string_view destination);

}  // namespace seluvorne::files
