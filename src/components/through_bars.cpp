// ThroughBarStore.clsThroughBars: the through-bar switch of each page, kept
// in a floor's "Hollenbar.Dat".
//
// The file is text, one line per page ever set, in page order, between a
// header and an end line:
//
//   HOLLENBAR 1
//   0 -1
//   4 0
//   END
//
// A missing file or a page without a line answers false. A file without its
// end line, or with any other line, raises 13: it is never read as a guess.
//
// A write replaces the file whole. The new content goes to a temporary file
// beside it ("Hollenbar.Dat.<process id>.tmp"), is flushed to the disk and
// renamed over the old file, so a crash at any moment leaves the old file or
// the new one, never a mix (at worst a stray temporary file). The floor
// folder is locked (flock) from reading to renaming, so two processes that
// write different pages at once lose neither.

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

#include "components/file_errors.h"
#include "components/standalone.h"
#include "seluvorne/durable_file.h"
#include "seluvorne/member_table.h"
#include "seluvorne/paths.h"
#include "seluvorne/runtime.h"

namespace seluvorne::components {

namespace {

constexpr std::string_view kHeader = "HOLLENBAR 1";
constexpr std::string_view kEnd = "END";

using PageValues = std::map<std::int16_t, bool>;

[[noreturn]] void RaiseBadFile(const std::filesystem::path& file, const std::string& what) {
  Raise(errc::kTypeMismatch, "(" + file.string() + ": " + what + ")");
}

PageValues ReadValues(const std::filesystem::path& file) {
  std::error_code error;
  if (!std::filesystem::exists(file, error)) {
    if (error) RaiseFileError(error, file.string());
    return {};
  }
  std::ifstream in(file, std::ios::binary);
  if (!in) RaiseFileError(errno, file.string());
  std::string line;
  if (!std::getline(in, line) || line != kHeader) RaiseBadFile(file, "not a through-bar file");
  PageValues values;
  int line_number = 1;
  while (std::getline(in, line)) {
    ++line_number;
    if (line == kEnd) return values;
    std::istringstream fields(line);
    int page = 0, value = 0;
    std::string rest;
    if (!(fields >> page >> value) || (fields >> rest) || page < 0 || page > 32767 ||
        (value != -1 && value != 0) || (!values.empty() && page <= values.rbegin()->first))
      RaiseBadFile(file, "bad line " + std::to_string(line_number) + ": \"" + line + "\"");
    values.emplace(static_cast<std::int16_t>(page), value != 0);
  }
  RaiseBadFile(file, "cut short: no END line");
}

// A file descriptor, closed when it goes.
class Descriptor {
 public:
  explicit Descriptor(int fd) : fd_(fd) {}
  ~Descriptor() {
    if (fd_ >= 0) ::close(fd_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int get() const { return fd_; }
  // Closes now, reporting the failure a deferred write may leave for close.
  int Close() {
    int result = ::close(fd_);
    fd_ = -1;
    return result;
  }

 private:
  int fd_;
};

class ThroughBars : public DispatchImpl<ThroughBars> {
 public:
  static const MemberTable<ThroughBars>& Members() {
    static const auto table =
        MemberTable<ThroughBars>("clsThroughBars")
            .method("SetPathGetHikiToosiSW", &ThroughBars::SetPathGetHikiToosiSW)
            .method("SetPathPutHikiToosiSW", &ThroughBars::SetPathPutHikiToosiSW);
    return table;
  }

  bool SetPathGetHikiToosiSW(const std::string& path, std::int16_t page) const {
    const PageValues values = ReadValues(FileOf(path, page));
    auto found = values.find(page);
    return found != values.end() && found->second;
  }

  // The value goes by reference, as the suite passes it; only read.
  void SetPathPutHikiToosiSW(const std::string& path, std::int16_t page, bool& value) const {
    const std::filesystem::path file = FileOf(path, page);
    const std::filesystem::path folder = file.parent_path().empty() ? "." : file.parent_path();
    Descriptor folder_lock(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder_lock.get() < 0) RaiseFileError(errno, folder.string());
    if (::flock(folder_lock.get(), LOCK_EX) != 0) RaiseFileError(errno, folder.string());

    PageValues values = ReadValues(file);
    values[page] = value;
    std::string content(kHeader);
    content += '\n';
    for (const auto& [number, on] : values)
      content += std::to_string(number) + (on ? " -1\n" : " 0\n");
    content += kEnd;
    content += '\n';
    if (const int error = ReplaceFileDurably(file, content)) RaiseFileError(error, file.string());
  }

 private:
  static std::filesystem::path FileOf(const std::string& path, std::int16_t page) {
    if (path.empty()) Raise(errc::kBadFileName);
    if (page < 0) Raise(errc::kInvalidCall, "(page " + vb::StrTrimmed(page) + ")");
    return NativePath(path);
  }
};

}  // namespace

Object NewThroughBars() {
  return std::make_shared<ThroughBars>();
}

}  // namespace seluvorne::components
