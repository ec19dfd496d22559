#include "file_format.h"

#include <array>
#include <cstring>
#include <fstream>

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
  std::ifstream file(path, std::ios::binary);
  file.read(reinterpret_cast<char*>(header.data()), header.size());
  std::size_t read = static_cast<std::size_t>(file.gcount());

  if (IsJetHeader(header.data(), read)) return FileKind::Jet;
  if (read < kHeaderSize || std::memcmp(header.data(), "SQLite format 3", 16) != 0)
    RaiseUnrecognized(shown_path);
  return FileKind::Native;
}

}  // namespace seluvorne::db
