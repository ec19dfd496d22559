// The one SQLite connection per database file per process.
//
// Every handle of the process that opens a file shares its connection, so
// they see each other's rows at once and the file's locks are taken once.
// The connection holds what is worth keeping between calls: the catalogue,
// prepared statements and translated statement texts. It is closed when the
// last handle lets go of it.
//
// Files are opened with WAL journaling and synchronous NORMAL: each Update is
// its own commit, cheap, and survives a crash of the process. A file on a
// network share uses the rollback journal instead (file_system.h). Another
// process's write lock is waited for up to the busy timeout, then 3218.
//
// Each handle holds a lease on the connection; while a file has leases it is
// marked in use for every process (file_lock.h).
#pragma once

#include <SQLiteCpp/Database.h>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "catalogue.h"
#include "dialect.h"
#include "engine_error.h"
#include "file_lock.h"
#include "statement.h"

namespace seluvorne::db {

class Connection {
 public:
  // A handle's lease on the connection to an existing database file, shared
  // with the process's other handles of it. Raises 3343 for a file that is
  // none of ours, 3024 when it went away while a creator or a deletion held it.
  static std::shared_ptr<Connection> Open(const std::filesystem::path& path,
                                          std::string_view shown_path);

  // Fills a file being created, through a connection of its own, before the
  // file appears under its name.
  using Builder = std::function<void(const std::shared_ptr<Connection>& building)>;
  // Creates the file (it must not exist) with its catalogue, `locale` and
  // what `build` adds, and answers a lease on it. The file is built under a
  // temporary name beside it and linked into place whole (creation.cpp):
  // other processes see it complete or not at all. Raises 3204 when the file
  // exists or another creator got there first. On failure nothing is left.
  static std::shared_ptr<Connection> Create(const std::filesystem::path& path,
                                            std::string_view shown_path, std::string_view locale,
                                            const Builder& build = {});
  // Whether a handle of this process holds the file open.
  static bool IsOpen(const std::filesystem::path& path);

  // Milliseconds a write waits for another process's lock; applies to open
  // connections too. Starts from SELUVORNE_BUSY_TIMEOUT_MS, else 5000.
  static std::int32_t BusyTimeout();
  static void SetBusyTimeout(std::int32_t milliseconds);

  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  const std::string& shown_path() const { return shown_path_; }

  // The catalogue as the file has it now: reloaded when the schema changed,
  // here or in another process.
  const Catalogue& catalogue();
  void AppendTable(const TableDefinition& table);
  // The caller's statement for SQLite; remembered per text.
  const Translation& Translate(const std::string& sql);

  // A prepared statement for `sql`, reset and ready to bind; kept for the
  // next use of the same text. `stage` tells how a rejection is reported.
  // The reference is valid until the next call of Prepare.
  PreparedStatement& Prepare(const std::string& sql, Stage stage = Stage::Run);
  // The statement of a translation, its numbers bound.
  PreparedStatement& Prepare(const Translation& translation);

  SQLite::Database& sqlite() { return sqlite_; }

 private:
  struct FileIdentity {
    std::uint64_t device = 0, inode = 0;
    friend bool operator==(const FileIdentity&, const FileIdentity&) = default;
  };
  struct IdentityHash {
    std::size_t operator()(const FileIdentity& id) const { return id.inode * 31 + id.device; }
  };
  struct CachedStatement {
    std::unique_ptr<PreparedStatement> statement;
    std::uint64_t last_use = 0;
  };
  using Registry = std::unordered_map<FileIdentity, std::weak_ptr<Connection>, IdentityHash>;

  class Lease;

  Connection(const std::filesystem::path& path, std::string_view shown_path, int open_flags,
             FileLock in_use = {});
  // A handle's lease; the first marks the file in use, the last unmarks it.
  static std::shared_ptr<Connection> NewLease(std::shared_ptr<Connection> connection);
  void AddHandle();
  void ReleaseHandle();
  static bool Identify(const std::filesystem::path& path, FileIdentity& identity);
  static Registry& TheRegistry();
  static std::shared_ptr<Connection> Register(std::unique_ptr<Connection> connection);
  void LoadCatalogue();

  FileLock in_use_;  // before sqlite_: its descriptor closes after SQLite's
  std::mutex handles_mutex_;
  int handles_ = 0;
  bool marked_in_use_ = false;
  SQLite::Database sqlite_;
  std::string shown_path_;
  FileIdentity identity_;
  Catalogue catalogue_;
  std::int64_t catalogue_version_ = -1;  // the schema version the catalogue was read at
  std::unordered_map<std::string, Translation> translations_;
  std::unordered_map<std::string, CachedStatement> statements_;
  std::uint64_t uses_ = 0;
};

// The files SQLite keeps beside a database file (write-ahead log, shared
// memory index, rollback journal).
std::vector<std::filesystem::path> CompanionFiles(const std::filesystem::path& path);

}  // namespace seluvorne::db
