#include "file_lock.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "seluvorne/durable_file.h"

namespace seluvorne::db {

namespace {

// SQLite's unix locks use the 512 bytes from 1 GiB on, and keeps that page
// free of data; this byte sits in the same page, after them.
constexpr off_t kInUseByte = 0x40000000 + 2048;

}  // namespace

// Read-write: an exclusive lock needs a descriptor open for writing. A file
// that can only be read gets a descriptor that can only share.
FileLock::FileLock(const std::filesystem::path& path)
    : descriptor_(::open(path.c_str(), O_RDWR | O_CLOEXEC)) {
  if (descriptor_ < 0 && errno == EACCES) descriptor_ = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
}

FileLock::~FileLock() {
  if (descriptor_ >= 0) ::close(descriptor_);
}

FileLock::FileLock(FileLock&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}

FileLock& FileLock::operator=(FileLock&& other) noexcept {
  if (this != &other) {
    if (descriptor_ >= 0) ::close(descriptor_);
    descriptor_ = std::exchange(other.descriptor_, -1);
  }
  return *this;
}

bool FileLock::Lock(short type, bool wait) {
  if (descriptor_ < 0) return false;
  struct flock lock {};
  lock.l_type = type;
  lock.l_whence = SEEK_SET;
  lock.l_start = kInUseByte;
  lock.l_len = 1;
  int result;
  do {
    result = ::fcntl(descriptor_, wait ? F_OFD_SETLKW : F_OFD_SETLK, &lock);
  } while (result != 0 && errno == EINTR);
  return result == 0;
}

bool FileLock::Share() {
  return Lock(F_RDLCK, true);
}

bool FileLock::TryExclusive() {
  return Lock(F_WRLCK, false);
}

bool FileLock::Names(const std::filesystem::path& path) const {
  struct stat held {
  }, named{};
  return descriptor_ >= 0 && ::fstat(descriptor_, &held) == 0 &&
         ::stat(path.c_str(), &named) == 0 && held.st_dev == named.st_dev &&
         held.st_ino == named.st_ino;
}

bool FileLock::Sync() const {
  return descriptor_ >= 0 && ::fsync(descriptor_) == 0;
}

void SyncFolder(const std::filesystem::path& folder) {
  SyncPath(folder, true);
}

}  // namespace seluvorne::db
