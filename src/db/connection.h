// The one SQLite connection per database file per process.
//
// Every handle of the process that opens a file shares its connection, so
// they see each other's rows at once and the file's locks are taken once.
// The connection holds what is worth keeping between calls: the catalogue,
// prepared statements and translated statement texts. It is closed when the
// last handle lets go of it.
//
// Files are opened with WAL journaling and synchronous NORMAL: each Update is
// its own commit, cheap, and survives a crash of the process. Another
// process's write lock is waited for up to the busy timeout, then 3218.
#pragma once

#include <SQLiteCpp/Database.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "catalogue.h"
#include "dialect.h"
#include "engine_error.h"
#include "statement.h"
#include "statement_guard.h"

namespace seluvorne::db {

class Connection {
 public:
  // The connection to an existing database file, shared with the process's
  // other handles of it. Raises 3343 for a file that is none of ours.
  static std::shared_ptr<Connection> Open(const std::filesystem::path& path,
                                          std::string_view shown_path);
  // Creates the file (it must not exist) with its catalogue and `locale`.
  // Raises 3204 when the file exists. On failure nothing is left behind.
  static std::shared_ptr<Connection> Create(const std::filesystem::path& path,
                                            std::string_view shown_path, std::string_view locale);
  // A private in-memory copy of a legacy Jet file's tables and rows, read
  // through the reader helper, with the same catalogue as a file of ours;
  // read-only. Raises 3343 when the file cannot be read whole.
  static std::shared_ptr<Connection> OpenLegacy(const std::filesystem::path& path,
                                                std::string_view shown_path);
  // Whether this process holds the file open.
  static bool IsOpen(const std::filesystem::path& path);

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
  // The statement of a caller's translated text, its numbers bound; what a
  // caller's statement may do is checked (statement_guard.h).
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
    bool checked = false;  // prepared under the caller's rules
  };
  using Registry = std::unordered_map<FileIdentity, std::weak_ptr<Connection>, IdentityHash>;

  Connection(const std::filesystem::path& path, std::string_view shown_path, int open_flags);
  static bool Identify(const std::filesystem::path& path, FileIdentity& identity);
  static Registry& TheRegistry();
  static std::shared_ptr<Connection> Register(std::unique_ptr<Connection> connection);
  void LoadCatalogue();
  PreparedStatement& Prepare(const std::string& sql, Stage stage, bool caller);

  SQLite::Database sqlite_;
  StatementGuard guard_{sqlite_.getHandle()};
  std::string shown_path_;
  FileIdentity identity_;
  Catalogue catalogue_;
  std::int64_t catalogue_version_ = -1;  // the schema version the catalogue was read at
  std::unordered_map<std::string, Translation> translations_;
  std::unordered_map<std::string, CachedStatement> statements_;
  std::uint64_t uses_ = 0;
  bool read_only_ = false;
};

// The files SQLite keeps beside a database file (write-ahead log, shared
// memory index, rollback journal).
std::vector<std::filesystem::path> CompanionFiles(const std::filesystem::path& path);

}  // namespace seluvorne::db
