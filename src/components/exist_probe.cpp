// FolderKit.clsExistProbe: whether a file or a folder exists. It answers the
// name (the path's last part), as the platform's own probe did, or "".

#include <filesystem>
#include <optional>

#include "components/standalone.h"
#include "seluvorne/member_table.h"
#include "seluvorne/paths.h"
#include "seluvorne/runtime.h"

namespace seluvorne::components {

namespace {

constexpr std::int32_t kFile = 0;
constexpr std::int32_t kFolder = 16;

// The last part of an interface path, separators at its end ignored.
std::string LastName(std::string_view path) {
  const auto is_separator = [](char c) { return c == '\\' || c == '/'; };
  while (!path.empty() && is_separator(path.back()))
    path.remove_suffix(1);
  std::size_t start = path.size();
  while (start > 0 && !is_separator(path[start - 1]))
    --start;
  return std::string(path.substr(start));
}

class ExistProbe : public DispatchImpl<ExistProbe> {
 public:
  static const MemberTable<ExistProbe>& Members() {
    static const auto table = MemberTable<ExistProbe>("clsExistProbe")
                                  .method("Find_FileExists", &ExistProbe::Find_FileExists);
    return table;
  }

  std::string Find_FileExists(const std::string& path, std::optional<std::int32_t> kind) const {
    if (path.empty()) Raise(errc::kBadFileName);
    const std::int32_t wanted = kind.value_or(kFile);
    if (wanted != kFile && wanted != kFolder)
      Raise(errc::kInvalidCall, "(kind " + vb::StrTrimmed(wanted) + ": 0 file, 16 folder)");
    std::error_code error;
    const auto status = std::filesystem::status(NativePath(path), error);
    const bool found = wanted == kFolder ? std::filesystem::is_directory(status)
                                         : std::filesystem::is_regular_file(status);
    return found ? LastName(path) : std::string();
  }
};

}  // namespace

Object NewExistProbe() {
  return std::make_shared<ExistProbe>();
}

}  // namespace seluvorne::components
