#include "connection.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <mutex>

#include "file_format.h"
#include "file_system.h"
#include "seluvorne/error.h"

namespace seluvorne::db {

namespace {

constexpr std::size_t kCachedStatements = 64;
constexpr std::size_t kCachedTranslations = 256;

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
      sqlite_(path.string(), open_flags, BusyTimeout()),
      shown_path_(shown_path) {
  Identify(path, identity_);
  // On a share the rollback journal, whatever mode another process left in
  // the file; switching needs every other connection gone (else 3218).
  bool shared_folder = OnNetworkFileSystem(path);
  std::string mode =
      sqlite_.execAndGet(shared_folder ? "PRAGMA journal_mode=DELETE" : "PRAGMA journal_mode=WAL")
          .getString();
  if (shared_folder && mode != "delete")
    Raise(errc::kLocked, "(the file is open in WAL mode by a process on another machine)");
  sqlite_.exec("PRAGMA synchronous=NORMAL");
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
  return std::shared_ptr<Connection>(lease, lease->get());
}

void Connection::AddHandle() {
  std::lock_guard lock(handles_mutex_);
  // A share that refuses locks leaves the file unmarked: the rules inside
  // this process still hold.
  if (handles_++ == 0 && !marked_in_use_) marked_in_use_ = in_use_.Share();
}

void Connection::ReleaseHandle() {
  std::lock_guard lock(handles_mutex_);
  if (--handles_ == 0 && marked_in_use_) {
    in_use_.Unlock();
    marked_in_use_ = false;
  }
}

std::shared_ptr<Connection> Connection::Open(const std::filesystem::path& path,
                                             std::string_view shown_path) {
  FileIdentity identity;
  if (Identify(path, identity)) {
    std::shared_ptr<Connection> shared;
    {
      std::lock_guard lock(registry_mutex);
      auto found = TheRegistry().find(identity);
      if (found != TheRegistry().end()) shared = found->second.lock();
    }
    if (shared) return NewLease(std::move(shared));
  }
  // Marked in use before SQLite opens it: this waits for a creator still
  // clearing what an older file left beside it, or for a deletion.
  FileLock in_use(path);
  if (!in_use.is_open()) Raise(errc::kCannotOpenFile, shown_path);
  bool marked = in_use.Share();
  if (!in_use.Names(path)) Raise(errc::kFileNotFoundDb, shown_path);
  CheckDatabaseFile(path, shown_path);
  return Guarded(shown_path, [&] {
    std::unique_ptr<Connection> connection(new Connection(
        path, shown_path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, std::move(in_use)));
    connection->marked_in_use_ = marked;
    connection->LoadCatalogue();
    return NewLease(Register(std::move(connection)));
  });
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
  PreparedStatement& version = Prepare("PRAGMA schema_version");
  version.Step();
  std::int64_t schema_version = version.ReadInteger(0);
  version.Reset();
  if (schema_version == catalogue_version_) return;
  catalogue_ = Catalogue::Load(sqlite_, shown_path_);
  catalogue_version_ = schema_version;
  translations_.clear();
}

const Catalogue& Connection::catalogue() {
  Guarded(shown_path_, [&] { LoadCatalogue(); });
  return catalogue_;
}

void Connection::AppendTable(const TableDefinition& table) {
  Guarded(shown_path_, [&] {
    Catalogue::AppendTable(sqlite_, table);
    LoadCatalogue();
  });
}

const Translation& Connection::Translate(const std::string& sql) {
  const Catalogue& current = catalogue();
  auto found = translations_.find(sql);
  if (found != translations_.end()) return found->second;
  if (translations_.size() >= kCachedTranslations) translations_.clear();
  return translations_.emplace(sql, TranslateStatement(sql, current)).first->second;
}

PreparedStatement& Connection::Prepare(const std::string& sql, Stage stage) {
  auto found = statements_.find(sql);
  if (found == statements_.end()) {
    if (statements_.size() >= kCachedStatements) {
      auto oldest = statements_.begin();
      for (auto it = statements_.begin(); it != statements_.end(); ++it)
        if (it->second.last_use < oldest->second.last_use) oldest = it;
      statements_.erase(oldest);
    }
    auto statement = Guarded(
        shown_path_, [&] { return std::make_unique<PreparedStatement>(sqlite_.getHandle(), sql); },
        stage);
    found = statements_.emplace(sql, CachedStatement{std::move(statement), 0}).first;
  }
  found->second.last_use = ++uses_;
  found->second.statement->Reset();
  return *found->second.statement;
}

PreparedStatement& Connection::Prepare(const Translation& translation) {
  PreparedStatement& statement = Prepare(translation.text, Stage::Prepare);
  Guarded(shown_path_, [&] {
    for (std::size_t i = 0; i < translation.numbers.size(); ++i)
      statement.BindNumber(static_cast<int>(i) + 1, translation.numbers[i]);
  });
  return statement;
}

}  // namespace seluvorne::db
