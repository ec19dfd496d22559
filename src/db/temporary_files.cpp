#include "temporary_files.h"

#include <unistd.h>

#include <atomic>
#include <chrono>
#include <string>

#include "connection.h"
#include "file_lock.h"

namespace seluvorne::db {

namespace fs = std::filesystem;

namespace {

bool IsCompanionName(std::string_view name) {
  for (std::string_view suffix : {"-wal", "-shm", "-journal"})
    if (name.ends_with(suffix)) return true;
  return false;
}

}  // namespace

fs::path TemporaryName(const fs::path& path, std::string_view mark) {
  static std::atomic<unsigned> counter{0};
  return path.string() + std::string(mark) + std::to_string(::getpid()) + "-" +
         std::to_string(++counter);
}

void ClearAbandoned(const fs::path& path, std::string_view mark) {
  const auto recent = fs::file_time_type::clock::now() - std::chrono::minutes(1);
  const std::string prefix = path.filename().string() + std::string(mark);
  std::error_code failure;
  fs::path folder = path.parent_path().empty() ? fs::path(".") : path.parent_path();
  for (const fs::directory_entry& entry : fs::directory_iterator(folder, failure)) {
    std::string name = entry.path().filename().string();
    if (!name.starts_with(prefix) || IsCompanionName(name)) continue;
    std::error_code unknown;
    if (fs::last_write_time(entry.path(), unknown) > recent || unknown) continue;
    FileLock writer(entry.path());
    if (writer.TryExclusive()) RemoveWithCompanions(entry.path());
  }
}

void RemoveWithCompanions(const fs::path& path) {
  std::error_code ignored;
  fs::remove(path, ignored);
  for (const fs::path& companion : CompanionFiles(path))
    fs::remove(companion, ignored);
}

}  // namespace seluvorne::db
