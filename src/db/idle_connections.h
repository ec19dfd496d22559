// Connections kept open for a short while after the last handle of their
// file let go of them.
//
// The stores close a floor and open it again at once, often in a loop (a
// member opens the current floor once per listed page). A fresh connection
// costs a file open, reading the schema and the catalogue, and mapping the
// write-ahead log's index; an idle one costs a lookup. The last few files
// stay open for a couple of seconds, then a background thread closes them.
//
// An idle connection holds no handle: the file counts as closed (IsOpen is
// false) and the deletes and copies that replace a file close its idle
// connection first. It is reused only while its path still names the same
// file, by device, inode and link count; the connection keeps the file open,
// so its inode cannot be reused meanwhile, and while nothing changed its
// size or modification time. A connection made before a fork is
// never used, nor closed, by the child.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>

namespace seluvorne::db {

class Connection;

// What an idle connection's file must still show to be reused: the same
// device and inode, as many names, and no change of size or modification
// time (another program may have written it in place).
struct FileStatus {
  std::uint64_t device = 0, inode = 0, links = 0, size = 0;
  std::int64_t modified_seconds = 0, modified_nanoseconds = 0;
  friend bool operator==(const FileStatus&, const FileStatus&) = default;
};
// The status of the file at `path`; false when there is none.
bool StatusOf(const std::filesystem::path& path, FileStatus& status);

class IdleConnections {
 public:
  static constexpr std::size_t kCapacity = 4;
  static constexpr int kLingerMilliseconds = 2000;

  // Keeps `connection` to the file at `path`, whose status was `status` when
  // it was opened; the oldest beyond kCapacity is closed at once.
  static void Keep(std::unique_ptr<Connection> connection, const std::filesystem::path& path,
                   const FileStatus& status);
  // The idle connection of `path`, taken out of the list, when the file
  // there still has `status`; null when there is none. One kept for a file
  // that `path` no longer names is closed first, before a new connection
  // opens the files of that path.
  static std::unique_ptr<Connection> Take(const std::filesystem::path& path,
                                          const FileStatus& status);
  // Closes the idle connections of `path` and of the file it names.
  static void Close(const std::filesystem::path& path);
};

}  // namespace seluvorne::db
