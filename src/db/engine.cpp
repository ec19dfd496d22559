// The engine and its default workspace: where databases are opened and made.

#include <climits>
#include <filesystem>

#include "connection.h"
#include "file_format.h"
#include "seluvorne/dao.h"
#include "seluvorne/entry_lock.h"
#include "seluvorne/member_table.h"
#include "seluvorne/paths.h"
#include "states.h"

namespace seluvorne::dao {

namespace {

// The file a caller names: 52 for an empty name, a NUL in it, or a name
// SQLite would read as a URI ("file:..."); 3044 for a name longer than the
// system allows.
std::filesystem::path DatabasePath(const std::string& path) {
  if (path.empty()) Raise(errc::kBadFileName, "(no file name)");
  if (path.size() >= 5 && detail::NameEqual{}(std::string_view(path).substr(0, 5), "file:"))
    Raise(errc::kBadFileName, "(" + path + ")");
  std::filesystem::path native = NativePath(path);
  bool too_long = native.native().size() >= PATH_MAX;
  for (const auto& part : native)
    too_long = too_long || part.native().size() > NAME_MAX;
  if (too_long) Raise(errc::kInvalidPath, path);
  return native;
}

// 3044 when the folder the file would be in does not exist.
void CheckFolder(const std::filesystem::path& native, const std::string& shown_path) {
  std::filesystem::path folder = native.parent_path();
  std::error_code ignored;
  if (!folder.empty() && !std::filesystem::is_directory(folder, ignored))
    Raise(errc::kInvalidPath, shown_path);
}

std::shared_ptr<Database> Handle(const std::string& path,
                                 std::shared_ptr<db::Connection> connection) {
  return std::make_shared<Database>(
      std::make_shared<db::DatabaseState>(db::DatabaseState{path, std::move(connection)}));
}

}  // namespace

std::shared_ptr<Database> OpenForUpdate(const std::string& path) {
  EntryLock entry;
  std::filesystem::path native = DatabasePath(path);
  // A file of ours this process holds is open for update already; one held
  // read-only is a legacy file. Another is judged by its header.
  std::shared_ptr<db::Connection> held = db::Connection::Reopen(native);
  if (held && !held->read_only()) return Handle(path, std::move(held));
  std::error_code ignored;
  if (held || (std::filesystem::is_regular_file(native, ignored) &&
               db::CheckDatabaseFile(native, path) == db::FileKind::Jet)) {
    Error error = MakeError(errc::kUnrecognizedFormat, path);
    throw Error(
        error.number, error.source,
        error.description +
            " It is a legacy (Jet) floor file, which opens only read-only; migrate the "
            "floor first: seluvorne migrate FLOOR (Python: seluvorne.migrate_floor(folder)).");
  }
  return DBEngine::Instance()->OpenDatabase(path);
}

// ---- DBEngine ---------------------------------------------------------------

const MemberTable<DBEngine>& DBEngine::Members() {
  static const auto table = MemberTable<DBEngine>("DBEngine")
                                .get("Workspaces", &DBEngine::Workspaces)
                                .method("OpenDatabase", &DBEngine::OpenDatabase)
                                .method("CreateDatabase", &DBEngine::CreateDatabase)
                                .get("BusyTimeout", &DBEngine::BusyTimeout)
                                .put("BusyTimeout", &DBEngine::SetBusyTimeout);
  return table;
}

std::shared_ptr<DBEngine> DBEngine::Instance() {
  // Never released: handles may be used until the process ends.
  static auto* engine = new std::shared_ptr<DBEngine>(std::make_shared<DBEngine>());
  return *engine;
}

std::shared_ptr<Workspace> DBEngine::Workspaces(const vb::Variant& index) {
  EntryLock entry;
  bool first =
      index.isString() ? *index.peek<std::string>() == "#Default Workspace#" : vb::CLng(index) == 0;
  if (!first) Raise(errc::kItemNotFound);
  if (!workspace_) workspace_ = std::make_shared<Workspace>();
  return workspace_;
}

std::shared_ptr<Database> DBEngine::OpenDatabase(const std::string& path,
                                                 std::optional<vb::Variant> options,
                                                 std::optional<bool> read_only,
                                                 std::optional<std::string> connect) {
  EntryLock entry;
  return Workspaces(vb::Variant(std::int16_t{0}))
      ->OpenDatabase(path, std::move(options), read_only, std::move(connect));
}

std::shared_ptr<Database> DBEngine::CreateDatabase(const std::string& path,
                                                   const std::string& locale,
                                                   std::optional<std::int32_t> options) {
  EntryLock entry;
  return Workspaces(vb::Variant(std::int16_t{0}))->CreateDatabase(path, locale, options);
}

std::int32_t DBEngine::BusyTimeout() const {
  EntryLock entry;
  return db::Connection::BusyTimeout();
}

void DBEngine::SetBusyTimeout(std::int32_t milliseconds) {
  EntryLock entry;
  db::Connection::SetBusyTimeout(milliseconds);
}

// ---- Workspace --------------------------------------------------------------

const MemberTable<Workspace>& Workspace::Members() {
  static const auto table = MemberTable<Workspace>("Workspace")
                                .get("Name", &Workspace::Name)
                                .method("OpenDatabase", &Workspace::OpenDatabase)
                                .method("CreateDatabase", &Workspace::CreateDatabase);
  return table;
}

std::shared_ptr<Database> Workspace::OpenDatabase(const std::string& path,
                                                  std::optional<vb::Variant> options,
                                                  std::optional<bool> read_only,
                                                  std::optional<std::string> connect) {
  EntryLock entry;
  if ((options && vb::CBool(*options)) || read_only.value_or(false) ||
      !connect.value_or("").empty())
    Raise(errc::kInvalidArgument, "(only shared, read-write opens are supported)");
  std::filesystem::path native = DatabasePath(path);
  if (std::shared_ptr<db::Connection> held = db::Connection::Reopen(native))
    return Handle(path, std::move(held));
  const std::string shown = native.string();  // messages show the native path
  CheckFolder(native, shown);
  std::error_code ignored;
  if (!std::filesystem::is_regular_file(native, ignored)) Raise(errc::kFileNotFoundDb, shown);
  return Handle(path, db::Connection::Open(native, shown));
}

std::shared_ptr<Database> Workspace::CreateDatabase(const std::string& path,
                                                    const std::string& locale,
                                                    std::optional<std::int32_t>) {
  EntryLock entry;
  return CreateDatabaseWith(path, locale, {});
}

std::shared_ptr<Database> Workspace::CreateDatabaseWith(
    const std::string& path, const std::string& locale,
    const std::function<void(Database&)>& build) {
  EntryLock entry;
  if (!locale.starts_with(";LANGID=")) Raise(errc::kInvalidArgument, "(locale '" + locale + "')");
  std::filesystem::path native = DatabasePath(path);
  const std::string shown = native.string();
  CheckFolder(native, shown);
  std::error_code ignored;
  if (std::filesystem::exists(std::filesystem::symlink_status(native, ignored)))
    Raise(errc::kDatabaseExists);
  db::Connection::Builder builder;
  if (build)
    builder = [&](const std::shared_ptr<db::Connection>& building) {
      std::shared_ptr<Database> handle = Handle(path, building);
      build(*handle);
      handle->Close();
    };
  return Handle(path, db::Connection::Create(native, shown, locale, builder));
}

}  // namespace seluvorne::dao
