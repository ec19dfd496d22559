#include "engine_error.h"

#include <sqlite3.h>

#include "seluvorne/error.h"

namespace seluvorne::db {

void RaiseEngineError(const SQLite::Exception& failure, std::string_view path, Stage stage) {
  switch (failure.getErrorCode()) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      Raise(errc::kLocked);
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
      Raise(errc::kUnrecognizedFormat, path);
    case SQLITE_CANTOPEN:
    case SQLITE_READONLY:
    case SQLITE_PERM:
    case SQLITE_AUTH:
      Raise(errc::kCannotOpenFile, path);
    case SQLITE_IOERR:
    case SQLITE_FULL:
      Raise(errc::kDiskError, failure.what());
    case SQLITE_NOMEM:
      Raise(errc::kOutOfMemory);
    default:
      if (stage == Stage::Prepare) Raise(errc::kSyntaxError, failure.what());
      Raise(errc::kEngineReserved, failure.what());
  }
}

}  // namespace seluvorne::db
