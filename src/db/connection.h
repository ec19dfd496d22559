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
#include "file_format.h"
#include "file_lock.h"
#include "read_rows.h"
#include "statement.h"
#include "statement_guard.h"

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
  // A private in-memory copy of a legacy Jet file's tables and rows, read
  // through the reader helper, with the same catalogue as a file of ours;
  // read-only. Raises 3343 when the file cannot be read whole.
  static std::shared_ptr<Connection> OpenLegacy(const std::filesystem::path& path,
                                                std::string_view shown_path);
  // A new lease on the connection this process already has to the file at
  // `path` (the same device and inode), or null. That file was judged when
  // it was first opened, so a reopen costs one stat and no other check.
  static std::shared_ptr<Connection> Reopen(const std::filesystem::path& path);
  // Whether a handle of this process holds the file open.
  static bool IsOpen(const std::filesystem::path& path);
  // Whether the file is one of ours or a legacy Jet file; raises as
  // CheckDatabaseFile does. A file this process has open is answered from its
  // connection: reading its header through a descriptor of our own would, on
  // that descriptor's close, drop the locks SQLite holds on the file here.
  static FileKind KindOf(const std::filesystem::path& path, std::string_view shown_path);

  // Milliseconds a write waits for another process's lock; applies to open
  // connections too. Starts from SELUVORNE_BUSY_TIMEOUT_MS, else 5000.
  static std::int32_t BusyTimeout();
  // The SQLite VFS files are opened through: SELUVORNE_SQLITE_VFS, read
  // once (the tests' fault-injecting shim), else SQLite's default ("").
  static const std::string& VfsName();
  static void SetBusyTimeout(std::int32_t milliseconds);

  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  const std::string& shown_path() const { return shown_path_; }
  // A legacy file opened in place: every write raises 3027.
  bool read_only() const { return read_only_; }

  // The catalogue as last read: at the open, after a table was appended
  // here, and when a lookup below or SQLite showed that the schema changed.
  const Catalogue& catalogue();
  // The table of that name (Catalogue::Find). When the catalogue has no
  // table of exactly that name, it is reread first if the schema changed
  // (another process may have added it).
  std::shared_ptr<const TableDefinition> FindTable(std::string_view name);
  // Rereads the catalogue when the file's schema version moved.
  void RefreshCatalogue();
  void AppendTable(const TableDefinition& table);
  // The caller's statement for SQLite; remembered per text.
  const Translation& Translate(const std::string& sql);

  // A prepared statement for `sql`, reset and ready to bind; kept for the
  // next use of the same text. `stage` tells how a rejection is reported.
  // The reference is valid until the next call of Prepare.
  PreparedStatement& Prepare(const std::string& sql, Stage stage = Stage::Run);
  // The statement of a caller's translated text, its numbers bound; what a
  // caller's statement may do is checked (statement_guard.h).
  PreparedStatement& Prepare(const Translation& translation);

  SQLite::Database& sqlite() { return sqlite_; }

  // The rows a read gave are shared by the record sets that run the same
  // query while the file is unchanged.
  // The rows remembered for `translation`, when the file has not changed
  // since they were read; else null.
  std::shared_ptr<const ReadRows> RememberedRows(const Translation& translation);
  // Remembers rows just read for `translation` (small results only).
  void RememberRows(const Translation& translation, std::shared_ptr<const ReadRows> rows);

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
    bool checked = false;  // prepared under the caller's rules
    int reprepares = 0;    // SQLite's count when last seen: it re-prepares after a schema change
  };
  using Registry = std::unordered_map<FileIdentity, std::weak_ptr<Connection>, IdentityHash>;

  class Lease;

  Connection(const std::filesystem::path& path, std::string_view shown_path, int open_flags,
             FileLock in_use = {});
  struct RememberedResult {
    std::shared_ptr<const ReadRows> rows;
    std::uint32_t data_version = 0;
    std::uint64_t last_use = 0;
  };

  // A handle's lease; the first marks the file in use. The mark is dropped
  // only when SQLite has closed the file (see ReleaseHandle).
  static std::shared_ptr<Connection> NewLease(std::shared_ptr<Connection> connection);
  void AddHandle();
  void ReleaseHandle();
  static bool Identify(const std::filesystem::path& path, FileIdentity& identity);
  static Registry& TheRegistry();
  static std::shared_ptr<Connection> Register(std::unique_ptr<Connection> connection);
  void LoadCatalogue();
  PreparedStatement& Prepare(const std::string& sql, Stage stage, bool caller);
  // SQLite's count of changes to the file, by any connection, as of the
  // last transaction of this one (SQLITE_FCNTL_DATA_VERSION).
  std::uint32_t DataVersion();

  FileLock in_use_;  // before sqlite_: its descriptor closes after SQLite's
  std::mutex handles_mutex_;
  int handles_ = 0;
  bool marked_in_use_ = false;
  SQLite::Database sqlite_;
  StatementGuard guard_{sqlite_.getHandle()};
  std::string shown_path_;
  FileIdentity identity_;
  Catalogue catalogue_;
  std::int64_t catalogue_version_ = -1;  // the schema version the catalogue was read at
  bool schema_moved_ = false;            // SQLite re-prepared a statement: check the version
  std::unordered_map<std::string, Translation> translations_;
  std::unordered_map<std::string, CachedStatement> statements_;
  std::uint64_t uses_ = 0;
  bool read_only_ = false;
  std::unordered_map<std::string, RememberedResult> results_;
};

// The files SQLite keeps beside a database file (write-ahead log, shared
// memory index, rollback journal).
std::vector<std::filesystem::path> CompanionFiles(const std::filesystem::path& path);

}  // namespace seluvorne::db
