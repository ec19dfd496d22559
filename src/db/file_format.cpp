#include "file_format.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>

#include "seluvorne/error.h"

namespace seluvorne::db {

namespace {

constexpr std::size_t kHeaderSize = 100;  // SQLite's database header

// Jet 3/4 files (and their successor) name their engine at byte 4.
bool IsJetHeader(const unsigned char* bytes, std::size_t size) {
  if (size < 19) return false;
  return std::memcmp(bytes + 4, "Standard Jet DB", 15) == 0 ||
         std::memcmp(bytes + 4, "Standard ACE DB", 15) == 0;
}

[[noreturn]] void RaiseUnrecognized(std::string_view shown_path) {
  Raise(errc::kUnrecognizedFormat, shown_path);
}

}  // namespace

FileKind CheckDatabaseFile(const std::filesystem::path& path, std::string_view shown_path) {
  std::array<unsigned char, kHeaderSize> header{};
  const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  // Gone since the caller saw it (another process deleted it): not found,
  // which the openers that create a missing file answer by creating it.
  if (descriptor < 0 && errno == ENOENT) Raise(errc::kFileNotFoundDb, shown_path);
  ssize_t read = 0;
  if (descriptor >= 0) {
    do {
      read = ::pread(descriptor, header.data(), header.size(), 0);
    } while (read < 0 && errno == EINTR);
    ::close(descriptor);
  }

  if (read > 0 && IsJetHeader(header.data(), static_cast<std::size_t>(read))) return FileKind::Jet;
  if (read < static_cast<ssize_t>(kHeaderSize) ||
      std::memcmp(header.data(), "SQLite format 3", 16) != 0)
    RaiseUnrecognized(shown_path);
  return FileKind::Native;
}

}  // namespace seluvorne::db
