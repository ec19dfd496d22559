// SQLite's failures as the engine's errors, in one place.
#pragma once

#include <SQLiteCpp/Exception.h>

#include <string_view>
#include <utility>

namespace seluvorne::db {

// Where in the engine's work a failure happened: preparing a statement from
// a caller's text, where SQLite's rejection is a syntax error (3131), or
// anything else.
enum class Stage { Prepare, Run };

// Raises the engine's error for SQLite's `failure` on the file shown as
// `path`: 3218 when locked past the busy timeout, 3343 for a damaged or
// foreign file, 3051 when the file cannot be opened or written, 3026 for a
// full disk, 3043 for other disk errors, 3131 with SQLite's message for a rejected statement, and
// 3000 with SQLite's message for anything else.
[[noreturn]] void RaiseEngineError(const SQLite::Exception& failure, std::string_view path,
                                   Stage stage = Stage::Run);

// Raises the engine's error for a failed system call on the file shown as
// `path` (errno `error`): 3204 when it exists, 3051 when permission or a
// read-only file system stops it, 3044 for a name too long, 3026 for a full
// disk, 3043 for other failures.
[[noreturn]] void RaiseFileError(int error, std::string_view path);

// Runs `work`, turning SQLite's exceptions into the engine's errors.
template <class F>
decltype(auto) Guarded(std::string_view path, F&& work, Stage stage = Stage::Run) {
  try {
    return std::forward<F>(work)();
  } catch (const SQLite::Exception& failure) {
    RaiseEngineError(failure, path, stage);
  }
}

}  // namespace seluvorne::db
