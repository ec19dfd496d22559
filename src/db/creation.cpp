// Creating a database file so that no process ever sees it half made.
//
// The file is built under a temporary name in its folder ("<name>.creating-
// <pid>-<n>"), closed, synced, and then hard-linked to its name, which fails
// when a file is already there: of several racing creators exactly one wins,
// and nobody's file is replaced. The winner holds the file's exclusive
// in-use lock from before the link until it has removed what an older file of
// that name left beside it (a log must never meet a new file), so openers
// wait for that; a loser touches nothing but its own temporary file. A
// creator killed midway leaves only a temporary file, which the next creation
// in that folder removes once no living creator holds it.

#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

#include <cerrno>
#include <string>

#include "connection.h"
#include "seluvorne/error.h"
#include "temporary_files.h"

namespace seluvorne::db {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kCreatingMark = ".creating-";

}  // namespace

std::shared_ptr<Connection> Connection::Create(const fs::path& path, std::string_view shown_path,
                                               std::string_view locale, const Builder& build) {
  ClearAbandoned(path, kCreatingMark);
  const fs::path temporary = TemporaryName(path, kCreatingMark);
  int descriptor = ::open(temporary.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0666);
  if (descriptor < 0) RaiseFileError(errno, shown_path);
  ::close(descriptor);  // SQLite has not opened it yet: closing drops none of its locks
  FileLock creator(temporary);
  try {
    if (!creator.TryExclusive()) Raise(errc::kCannotOpenFile, shown_path);
    Guarded(shown_path, [&] {
      std::shared_ptr<Connection> building(
          new Connection(temporary, shown_path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX));
      Catalogue::Create(building->sqlite_, locale);
      building->LoadCatalogue();
      if (build) build(building);
    });  // closed here, its log folded into the file
    if (!creator.Sync()) Raise(errc::kDiskError, shown_path);
    if (::link(temporary.c_str(), path.c_str()) != 0) {
      if (errno == EEXIST) Raise(errc::kDatabaseExists);
      Raise(errc::kCannotOpenFile, shown_path);
    }
  } catch (...) {
    RemoveWithCompanions(temporary);
    throw;
  }
  // Won: the file is ours, and nobody can have opened it past the lock yet.
  RemoveWithCompanions(temporary);
  for (const fs::path& companion : CompanionFiles(path)) {
    std::error_code ignored;
    fs::remove(companion, ignored);
  }
  SyncFolder(path.parent_path());
  creator = FileLock();  // unlocks; SQLite has no descriptor of the file in this process
  return Open(path, shown_path);
}

}  // namespace seluvorne::db
