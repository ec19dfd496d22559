#include "connection.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <mutex>

#include "file_format.h"
#include "file_system.h"
#include "held_files.h"
#include "seluvorne/error.h"
#include "untrusted.h"

namespace seluvorne::db {

namespace {

constexpr std::size_t kCachedStatements = 64;
// Enough for a statement per page of a floor and a few more, so that a pass
// over every page translates each text once.
constexpr std::size_t kCachedTranslations = 1024;
// Results remembered per connection, and the most values one may hold: the
// reads repeated while a file is unchanged are a page's rows or a column of
// the whole floor, not whole tables.
constexpr std::size_t kRememberedResults = 16;
constexpr std::size_t kRememberedValues = 1 << 16;
// The write-ahead log is cut back to this size once a checkpoint has emptied
// it: a large statement leaves no large log behind. Below this size the log
// is reused as it is (the automatic checkpoint runs at about 4 MB).
constexpr const char* kJournalSizeLimit = "PRAGMA journal_size_limit=4194304";

std::int32_t InitialBusyTimeout() {
  if (const char* text = std::getenv("SELUVORNE_BUSY_TIMEOUT_MS")) {
    char* end = nullptr;
    long value = std::strtol(text, &end, 10);
    if (end != text && *end == '\0' && value >= 0 && value <= INT32_MAX)
      return static_cast<std::int32_t>(value);
  }
  return 5000;
}

std::atomic<std::int32_t>& BusyTimeoutSetting() {
  static std::atomic<std::int32_t> milliseconds{InitialBusyTimeout()};
  return milliseconds;
}

std::mutex registry_mutex;

}  // namespace

std::vector<std::filesystem::path> CompanionFiles(const std::filesystem::path& path) {
  std::vector<std::filesystem::path> files;
  for (const char* suffix : {"-wal", "-shm", "-journal"})
    files.push_back(path.string() + suffix);
  return files;
}

Connection::Registry& Connection::TheRegistry() {
  static Registry* registry = new Registry;  // never destroyed: handles may outlive main
  return *registry;
}

bool Connection::Identify(const std::filesystem::path& path, FileIdentity& identity) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) return false;
  identity = {static_cast<std::uint64_t>(status.st_dev), static_cast<std::uint64_t>(status.st_ino)};
  return true;
}

Connection::Connection(const std::filesystem::path& path, std::string_view shown_path,
                       int open_flags, FileLock in_use)
    : in_use_(std::move(in_use)),
      sqlite_(path.string(), open_flags, BusyTimeout(), VfsName()),
      shown_path_(shown_path) {
  Identify(path, identity_);
  DistrustSchema(sqlite_.getHandle());
  // On a share the rollback journal, whatever mode another process left in
  // the file; switching needs every other connection gone (else 3218).
  bool shared_folder = OnNetworkFileSystem(path);
  std::string mode =
      sqlite_.execAndGet(shared_folder ? "PRAGMA journal_mode=DELETE" : "PRAGMA journal_mode=WAL")
          .getString();
  if (shared_folder && mode != "delete")
    Raise(errc::kLocked, "(the file is open in WAL mode by a process on another machine)");
  sqlite_.exec("PRAGMA synchronous=NORMAL");
  sqlite_.exec(kJournalSizeLimit);
}

Connection::~Connection() {
  std::lock_guard lock(registry_mutex);
  auto found = TheRegistry().find(identity_);
  if (found != TheRegistry().end() && found->second.expired()) TheRegistry().erase(found);
}

std::shared_ptr<Connection> Connection::Register(std::unique_ptr<Connection> connection) {
  std::shared_ptr<Connection> shared(std::move(connection));
  std::lock_guard lock(registry_mutex);
  TheRegistry()[shared->identity_] = shared;
  return shared;
}

// Keeps the connection, and the file marked in use, for one handle.
class Connection::Lease {
 public:
  explicit Lease(std::shared_ptr<Connection> connection) : connection_(std::move(connection)) {
    connection_->AddHandle();
  }
  ~Lease() { connection_->ReleaseHandle(); }
  Lease(const Lease&) = delete;
  Lease& operator=(const Lease&) = delete;
  Connection* get() const { return connection_.get(); }

 private:
  std::shared_ptr<Connection> connection_;
};

std::shared_ptr<Connection> Connection::NewLease(std::shared_ptr<Connection> connection) {
  auto lease = std::make_shared<Lease>(std::move(connection));
  std::shared_ptr<Connection> handle(lease, lease->get());
  HoldWhileHeld(handle);
  return handle;
}

void Connection::AddHandle() {
  std::lock_guard lock(handles_mutex_);
  // A share that refuses locks leaves the file unmarked: the rules inside
  // this process still hold.
  if (handles_++ == 0 && !marked_in_use_) marked_in_use_ = in_use_.Share();
}

// The last handle leaves the mark in place: it goes with the descriptor,
// which closes only after SQLite has closed the file (~Connection). SQLite's
// close of a file's last connection checkpoints and then deletes "<name>-wal"
// and "<name>-shm" by name. Unmarked before that, the file could meanwhile be
// deleted by another process and a new one created under its name and opened,
// and this close would then delete the new file's live log and index: its
// writer got 3043, later openers a file whose log was folded twice (3343).
void Connection::ReleaseHandle() {
  std::lock_guard lock(handles_mutex_);
  --handles_;
}

std::shared_ptr<Connection> Connection::Reopen(const std::filesystem::path& path) {
  FileIdentity identity;
  if (!Identify(path, identity)) return nullptr;
  std::shared_ptr<Connection> shared;
  {
    std::lock_guard lock(registry_mutex);
    auto found = TheRegistry().find(identity);
    if (found != TheRegistry().end()) shared = found->second.lock();
  }
  return shared ? NewLease(std::move(shared)) : nullptr;
}

std::shared_ptr<Connection> Connection::Open(const std::filesystem::path& path,
                                             std::string_view shown_path) {
  if (std::shared_ptr<Connection> held = Reopen(path)) return held;
  // Marked in use before SQLite opens it: this waits for a creator still
  // clearing what an older file left beside it, or for a deletion.
  FileLock in_use(path);
  if (!in_use.is_open())
    Raise(errno == ENOENT ? errc::kFileNotFoundDb : errc::kCannotOpenFile, shown_path);
  bool marked = in_use.Share();
  if (!in_use.Names(path)) Raise(errc::kFileNotFoundDb, shown_path);
  if (CheckDatabaseFile(path, shown_path) == FileKind::Jet) return OpenLegacy(path, shown_path);
  return Guarded(shown_path, [&] {
    std::unique_ptr<Connection> connection(new Connection(
        path, shown_path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, std::move(in_use)));
    connection->marked_in_use_ = marked;
    connection->LoadCatalogue();
    return NewLease(Register(std::move(connection)));
  });
}

FileKind Connection::KindOf(const std::filesystem::path& path, std::string_view shown_path) {
  if (std::shared_ptr<Connection> held = Reopen(path))
    return held->read_only() ? FileKind::Jet : FileKind::Native;
  return CheckDatabaseFile(path, shown_path);
}

bool Connection::IsOpen(const std::filesystem::path& path) {
  FileIdentity identity;
  if (!Identify(path, identity)) return false;
  std::lock_guard lock(registry_mutex);
  auto found = TheRegistry().find(identity);
  if (found == TheRegistry().end()) return false;
  std::shared_ptr<Connection> connection = found->second.lock();
  if (!connection) return false;
  std::lock_guard handles(connection->handles_mutex_);
  return connection->handles_ > 0;
}

std::int32_t Connection::BusyTimeout() {
  return BusyTimeoutSetting().load();
}

const std::string& Connection::VfsName() {
  static const std::string name = [] {
    const char* text = std::getenv("SELUVORNE_SQLITE_VFS");
    return std::string(text ? text : "");
  }();
  return name;
}

void Connection::SetBusyTimeout(std::int32_t milliseconds) {
  if (milliseconds < 0) Raise(errc::kInvalidCall);
  BusyTimeoutSetting() = milliseconds;
  std::vector<std::shared_ptr<Connection>> open;
  {
    std::lock_guard lock(registry_mutex);
    for (auto& [identity, weak] : TheRegistry())
      if (std::shared_ptr<Connection> connection = weak.lock()) open.push_back(connection);
  }
  // Outside the lock: dropping the last reference closes a connection, which
  // takes the lock itself.
  for (const auto& connection : open)
    connection->sqlite_.setBusyTimeout(milliseconds);
}

void Connection::LoadCatalogue() {
  catalogue_ = Catalogue::Load(sqlite_, shown_path_, catalogue_version_);
  translations_.clear();
  results_.clear();
  RefuseActingObjects(catalogue_.foreign(), shown_path_);
}

void Connection::RefreshCatalogue() {
  schema_moved_ = false;
  Guarded(shown_path_, [&] {
    PreparedStatement& version = Prepare("PRAGMA schema_version");
    version.Step();
    std::int64_t schema_version = version.ReadInteger(0);
    version.Reset();
    if (schema_version != catalogue_version_) LoadCatalogue();
  });
}

const Catalogue& Connection::catalogue() {
  if (schema_moved_) RefreshCatalogue();
  return catalogue_;
}

std::shared_ptr<const TableDefinition> Connection::FindTable(std::string_view name) {
  if (schema_moved_) RefreshCatalogue();
  for (const auto& table : catalogue_.tables())
    if (table->name == name) return table;
  RefreshCatalogue();
  return catalogue_.Find(name);
}

void Connection::AppendTable(const TableDefinition& table) {
  Guarded(shown_path_, [&] {
    Catalogue::AppendTable(sqlite_, table);
    LoadCatalogue();
  });
}

const Translation& Connection::Translate(const std::string& sql) {
  if (schema_moved_) RefreshCatalogue();
  auto found = translations_.find(sql);
  if (found != translations_.end()) return found->second;
  if (translations_.size() >= kCachedTranslations) translations_.clear();
  Translation translation;
  try {
    translation = TranslateStatement(sql, catalogue_);
  } catch (const Error& error) {
    // A table this connection does not know may have been added by another
    // process: read the catalogue again if the schema moved, and retry.
    if (error.number != errc::kTableNotFound) throw;
    const std::int64_t before = catalogue_version_;
    RefreshCatalogue();
    if (catalogue_version_ == before) throw;
    translation = TranslateStatement(sql, catalogue_);
  }
  return translations_.emplace(sql, std::move(translation)).first->second;
}

std::uint32_t Connection::DataVersion() {
  unsigned int version = 0;
  sqlite3_file_control(sqlite_.getHandle(), "main", SQLITE_FCNTL_DATA_VERSION, &version);
  return version;
}

namespace {

std::string ResultKey(const Translation& translation) {
  std::string key = translation.text;
  for (const std::string& number : translation.numbers) {
    key += '\0';
    key += number;
  }
  return key;
}

}  // namespace

std::shared_ptr<const ReadRows> Connection::RememberedRows(const Translation& translation) {
  if (results_.empty()) return nullptr;
  auto found = results_.find(ResultKey(translation));
  if (found == results_.end()) return nullptr;
  // A read transaction, begun and ended, brings SQLite's data version up to
  // date with every commit made since, by any connection of any process.
  Guarded(shown_path_, [&] {
    PreparedStatement& probe = Prepare("PRAGMA data_version");
    probe.Step();
    probe.Reset();
  });
  if (found->second.data_version != DataVersion()) {
    results_.erase(found);
    return nullptr;
  }
  found->second.last_use = ++uses_;
  return found->second.rows;
}

void Connection::RememberRows(const Translation& translation,
                              std::shared_ptr<const ReadRows> rows) {
  if (rows->value_count() > kRememberedValues) return;
  if (results_.size() >= kRememberedResults) {
    auto oldest = results_.begin();
    for (auto it = results_.begin(); it != results_.end(); ++it)
      if (it->second.last_use < oldest->second.last_use) oldest = it;
    results_.erase(oldest);
  }
  // The data version of the read that gave the rows, just ended.
  results_[ResultKey(translation)] = {std::move(rows), DataVersion(), ++uses_};
}

PreparedStatement& Connection::Prepare(const std::string& sql, Stage stage) {
  return Prepare(sql, stage, false);
}

PreparedStatement& Connection::Prepare(const std::string& sql, Stage stage, bool caller) {
  auto found = statements_.find(sql);
  if (found != statements_.end() && caller && !found->second.checked) {
    statements_.erase(found);  // the engine's own statement: a caller's is checked first
    found = statements_.end();
  }
  if (found == statements_.end()) {
    if (statements_.size() >= kCachedStatements) {
      auto oldest = statements_.begin();
      for (auto it = statements_.begin(); it != statements_.end(); ++it)
        if (it->second.last_use < oldest->second.last_use) oldest = it;
      statements_.erase(oldest);
    }
    auto statement = Guarded(
        shown_path_,
        [&] {
          return caller ? guard_.Prepare(sql)
                        : std::make_unique<PreparedStatement>(sqlite_.getHandle(), sql);
        },
        stage);
    found = statements_.emplace(sql, CachedStatement{std::move(statement), 0, caller}).first;
  }
  found->second.last_use = ++uses_;
  PreparedStatement& statement = *found->second.statement;
  statement.Reset();
  // SQLite re-prepares a statement whose tables changed under it: the
  // catalogue may be behind too.
  const int reprepares = statement.Reprepares();
  if (reprepares != found->second.reprepares) {
    found->second.reprepares = reprepares;
    schema_moved_ = true;
  }
  return statement;
}

PreparedStatement& Connection::Prepare(const Translation& translation) {
  PreparedStatement& statement = Prepare(translation.text, Stage::Prepare, true);
  Guarded(shown_path_, [&] {
    for (std::size_t i = 0; i < translation.numbers.size(); ++i)
      statement.BindNumber(static_cast<int>(i) + 1, translation.numbers[i]);
  });
  return statement;
}

}  // namespace seluvorne::db
