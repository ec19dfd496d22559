#include "seluvorne/durable_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <string>

namespace seluvorne {

int SyncPath(const std::filesystem::path& path, bool folder) {
  const char* name = path.empty() ? "." : path.c_str();
  const int descriptor = ::open(name, (folder ? O_RDONLY | O_DIRECTORY : O_RDONLY) | O_CLOEXEC);
  if (descriptor < 0) return errno;
  const int error = ::fsync(descriptor) == 0 ? 0 : errno;
  ::close(descriptor);
  return error;
}

int ReplaceFileDurably(const std::filesystem::path& file, std::string_view content) {
  std::filesystem::path temporary = file;
  temporary += "." + std::to_string(::getpid()) + ".tmp";
  const int descriptor = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  if (descriptor < 0) return errno;
  int error = 0;
  for (std::size_t written = 0; error == 0 && written < content.size();) {
    const ssize_t count = ::write(descriptor, content.data() + written, content.size() - written);
    if (count < 0 && errno != EINTR) error = errno;
    if (count > 0) written += static_cast<std::size_t>(count);
  }
  if (error == 0 && ::fsync(descriptor) != 0) error = errno;
  if (::close(descriptor) != 0 && error == 0) error = errno;  // a deferred write's failure
  if (error == 0 && ::rename(temporary.c_str(), file.c_str()) != 0) error = errno;
  if (error != 0) {
    ::unlink(temporary.c_str());
    return error;
  }
  return SyncPath(file.parent_path(), true);
}

}  // namespace seluvorne
