#include "engine_error.h"

#include <sqlite3.h>

#include <cerrno>
#include <cstring>

#include "seluvorne/error.h"

namespace seluvorne::db {

void RaiseEngineError(const SQLite::Exception& failure, std::string_view path, Stage stage) {
  // Extended codes (SQLITE_IOERR_WRITE, SQLITE_READONLY_DBMOVED, ...) carry
  // their primary code in the low byte.
  switch (failure.getErrorCode() & 0xff) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
    case SQLITE_PROTOCOL:  // the log's locks stayed taken through every retry
      Raise(errc::kLocked);
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
      Raise(errc::kUnrecognizedFormat, path);
    case SQLITE_CANTOPEN:
    case SQLITE_READONLY:
    case SQLITE_PERM:
    case SQLITE_AUTH:
      Raise(errc::kCannotOpenFile, path);
    case SQLITE_FULL:
      Raise(errc::kDiskFull, failure.what());
    case SQLITE_IOERR:
      Raise(errc::kDiskError, failure.what());
    case SQLITE_TOOBIG:  // past the limits of untrusted.h
      if (stage == Stage::Prepare) Raise(errc::kSyntaxError, failure.what());
      RaiseExplained(errc::kUnrecognizedFormat, path,
                     std::string(failure.what()) + ": larger than any floor holds");
    case SQLITE_NOMEM:
      Raise(errc::kOutOfMemory);
    default:
      if (stage == Stage::Prepare) Raise(errc::kSyntaxError, failure.what());
      Raise(errc::kEngineReserved, failure.what());
  }
}

void RaiseFileError(int error, std::string_view path) {
  switch (error) {
    case EEXIST:
      Raise(errc::kDatabaseExists);
    case EACCES:
    case EPERM:
    case EROFS:
      Raise(errc::kCannotOpenFile, path);
    case ENAMETOOLONG:
    case ENOENT:
    case ENOTDIR:
      Raise(errc::kInvalidPath, path);
    case ENOSPC:
    case EDQUOT:
      Raise(errc::kDiskFull, std::strerror(error));
    default:
      Raise(errc::kDiskError, std::strerror(error));
  }
}

}  // namespace seluvorne::db
