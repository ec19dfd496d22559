#include "seluvorne/files.h"

#include <SQLiteCpp/Backup.h>
#include <SQLiteCpp/Database.h>

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "connection.h"
#include "file_lock.h"
#include "seluvorne/entry_lock.h"
#include "seluvorne/error.h"
#include "seluvorne/paths.h"
#include "temporary_files.h"

namespace seluvorne::files {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kCopyingMark = ".copying-";

bool IsSqliteFile(const fs::path& path) {
  char header[16] = {};
  std::ifstream file(path, std::ios::binary);
  file.read(header, sizeof header);
  return file.gcount() == sizeof header && std::memcmp(header, "SQLite format 3", 16) == 0;
}

void CheckFolderOf(const fs::path& path) {
  std::error_code ignored;
  if (!path.parent_path().empty() && !fs::is_directory(path.parent_path(), ignored))
    Raise(errc::kPathNotFound);
}

void RemoveCompanions(const fs::path& path) {
  std::error_code ignored;
  for (const fs::path& companion : db::CompanionFiles(path))
    fs::remove(companion, ignored);
}

}  // namespace

bool FileExists(std::string_view path) {
  EntryLock entry;
  std::error_code ignored;
  return fs::is_regular_file(NativePath(path), ignored);
}

bool FolderExists(std::string_view path) {
  EntryLock entry;
  std::error_code ignored;
  return fs::is_directory(NativePath(path), ignored);
}

void DeleteFile(std::string_view path) {
  EntryLock entry;
  fs::path native = NativePath(path);
  CheckFolderOf(native);
  if (!FileExists(path)) Raise(errc::kFileNotFound);
  if (db::Connection::IsOpen(native)) Raise(errc::kPermissionDenied);
  // Held until the file is gone: no process can open it meanwhile.
  db::FileLock unused(native);
  if (unused.is_open() && !unused.TryExclusive()) Raise(errc::kPermissionDenied);
  // Its companions first: once the file is gone, a creator may put a new
  // one in its place, whose live log must not be taken for this file's.
  RemoveCompanions(native);
  std::error_code failure;
  if (!fs::remove(native, failure)) Raise(errc::kPermissionDenied);
  db::SyncFolder(native.parent_path());
}

void CopyFile(std::string_view source, std::string_view destination) {
  EntryLock entry;
  fs::path from = NativePath(source), to = NativePath(destination);
  CheckFolderOf(from);
  if (!FileExists(source)) Raise(errc::kFileNotFound);
  CheckFolderOf(to);
  std::error_code ignored;
  if (db::Connection::IsOpen(to) || fs::equivalent(from, to, ignored))
    Raise(errc::kPermissionDenied);
  // Held until the copy has replaced the destination: another process's
  // handle on it gives 70, and none can open it meanwhile.
  db::FileLock replaced(to);
  if (replaced.is_open() && !replaced.TryExclusive()) Raise(errc::kPermissionDenied);

  // A file open here is surely a database; reading its header through a
  // descriptor of our own would drop SQLite's locks on it when closed.
  if (!db::Connection::IsOpen(from) && !IsSqliteFile(from)) {
    std::error_code failure;
    fs::copy_file(from, to, fs::copy_options::overwrite_existing, failure);
    if (failure) Raise(errc::kPermissionDenied);
    db::SyncFolder(to.parent_path());
    return;
  }
  // A consistent snapshot of the database, committed rows in the log
  // included, written beside the destination under a name of its own and
  // then put in its place. Copies a crash left half written are cleared.
  db::ClearAbandoned(to, kCopyingMark);
  const fs::path copy = db::TemporaryName(to, kCopyingMark);
  {
    int descriptor = ::open(copy.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0666);
    if (descriptor < 0) Raise(errc::kPermissionDenied);
    ::close(descriptor);  // SQLite has not opened it yet: closing drops none of its locks
  }
  db::FileLock copying(copy);
  // Lets go of the copy (no SQLite descriptor of it is left then) and removes it.
  auto abandon = [&] {
    copying = db::FileLock();
    db::RemoveWithCompanions(copy);
  };
  if (!copying.TryExclusive()) {
    abandon();
    Raise(errc::kPermissionDenied);
  }
  // The source is marked in use while it is read, as an open handle marks
  // it: the reader's close may checkpoint it and delete "<source>-wal" by
  // name, which must not meet a file another process made under that name
  // after deleting this one. A source open here is marked already, and a
  // descriptor of ours closed on it would drop SQLite's locks.
  db::FileLock reading;
  if (!db::Connection::IsOpen(from)) {
    reading = db::FileLock(from);
    if (!reading.Share() || !reading.Names(from)) {
      abandon();
      Raise(errc::kFileNotFound);
    }
  }
  try {
    {
      SQLite::Database reader(from.string(), SQLite::OPEN_READONLY, db::Connection::BusyTimeout(),
                              db::Connection::VfsName());
      SQLite::Database writer(copy.string(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE, 0,
                              db::Connection::VfsName());
      SQLite::Backup backup(writer, reader);
      backup.executeStep();
    }
    RemoveCompanions(to);  // a log left beside the old file must not meet the new one
    if (replaced.is_open()) {
      fs::rename(copy, to);  // the file we hold locked, replaced
    } else if (::link(copy.c_str(), to.c_str()) == 0) {
      fs::remove(copy);
    } else {
      // Made by another process since we looked: its file is not ours to replace.
      Raise(errno == EEXIST ? errc::kPermissionDenied : errc::kPathFileAccess);
    }
    copying = db::FileLock();  // SQLite has no descriptor of the copy left in this process
    db::SyncFolder(to.parent_path());
  } catch (const SQLite::Exception& failure) {  // a full disk, a failing one, a lock
    abandon();
    db::RaiseEngineError(failure, destination);
  } catch (const Error&) {
    abandon();
    throw;
  } catch (const std::exception& failure) {
    abandon();
    Raise(errc::kPathFileAccess, failure.what());
  }
}

}  // namespace seluvorne::files
