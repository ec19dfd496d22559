// Whether a database file is in use, across processes.
//
// Each file with an open handle, in any process, carries a shared lock on one
// byte that SQLite never locks (inside the page SQLite keeps free for its own
// locks). Deleting or replacing the file asks for the exclusive lock without
// waiting, so it is refused while any handle anywhere has the file, as it is
// inside one process. A creator holds the exclusive lock from the moment its
// file appears until its leftovers are cleared, so openers wait for it.
//
// The locks are open-file-description locks: they belong to the descriptor
// that took them, and closing some other descriptor of the file does not drop
// them (as it would drop a classic POSIX lock). The reverse still holds:
// closing any descriptor of a file drops the classic locks SQLite holds on it
// in this process, so a descriptor here is only closed after SQLite closed the
// file, or on a file SQLite does not have open in this process.
#pragma once

#include <filesystem>

namespace seluvorne::db {

class FileLock {
 public:
  FileLock() = default;
  // Opens a descriptor on `path`; is_open() tells whether that worked.
  explicit FileLock(const std::filesystem::path& path);
  ~FileLock();
  FileLock(FileLock&& other) noexcept;
  FileLock& operator=(FileLock&& other) noexcept;

  bool is_open() const { return descriptor_ >= 0; }
  // The shared lock, waiting for an exclusive holder; false on failure.
  bool Share();
  // The exclusive lock, without waiting; false when another handle has it.
  bool TryExclusive();
  // Whether `path` still names the file this descriptor has.
  bool Names(const std::filesystem::path& path) const;
  // Forces the file's contents to the disk.
  bool Sync() const;

 private:
  bool Lock(short type, bool wait);
  int descriptor_ = -1;
};

// Forces a folder's entries (a file linked, renamed or removed) to the disk.
void SyncFolder(const std::filesystem::path& folder);

}  // namespace seluvorne::db
