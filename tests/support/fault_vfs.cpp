#include "fault_vfs.h"

#include <sqlite3.h>

#include <atomic>
#include <cstdlib>
#include <cstring>

namespace seluvorne::testing {

namespace {

std::atomic<Fault> armed{Fault::kNone};
std::atomic<int> skip_left{0};
std::atomic<int> injected{0};

sqlite3_vfs* real_vfs = nullptr;
sqlite3_vfs shim_vfs;

// Whether the call concerned by `fault` fails now.
bool Fails(Fault fault) {
  if (armed.load() != fault) return false;
  if (skip_left.fetch_sub(1) > 0) return false;
  ++injected;
  return true;
}

// Our file: the methods table first, then the real VFS's file.
struct ShimFile {
  sqlite3_file base;
  sqlite3_file* real() { return reinterpret_cast<sqlite3_file*>(this + 1); }
};
ShimFile* Shim(sqlite3_file* file) {
  return reinterpret_cast<ShimFile*>(file);
}

int Close(sqlite3_file* file) {
  return Shim(file)->real()->pMethods->xClose(Shim(file)->real());
}
int Read(sqlite3_file* file, void* buffer, int amount, sqlite3_int64 offset) {
  return Shim(file)->real()->pMethods->xRead(Shim(file)->real(), buffer, amount, offset);
}
int Write(sqlite3_file* file, const void* buffer, int amount, sqlite3_int64 offset) {
  if (Fails(Fault::kWriteError)) return SQLITE_IOERR_WRITE;
  if (Fails(Fault::kDiskFull)) return SQLITE_FULL;
  return Shim(file)->real()->pMethods->xWrite(Shim(file)->real(), buffer, amount, offset);
}
int Truncate(sqlite3_file* file, sqlite3_int64 size) {
  return Shim(file)->real()->pMethods->xTruncate(Shim(file)->real(), size);
}
int Sync(sqlite3_file* file, int flags) {
  if (Fails(Fault::kSyncError)) return SQLITE_IOERR_FSYNC;
  return Shim(file)->real()->pMethods->xSync(Shim(file)->real(), flags);
}
int FileSize(sqlite3_file* file, sqlite3_int64* size) {
  return Shim(file)->real()->pMethods->xFileSize(Shim(file)->real(), size);
}
int Lock(sqlite3_file* file, int level) {
  if (level >= SQLITE_LOCK_RESERVED && Fails(Fault::kLocked)) return SQLITE_BUSY;
  return Shim(file)->real()->pMethods->xLock(Shim(file)->real(), level);
}
int Unlock(sqlite3_file* file, int level) {
  return Shim(file)->real()->pMethods->xUnlock(Shim(file)->real(), level);
}
int CheckReservedLock(sqlite3_file* file, int* out) {
  return Shim(file)->real()->pMethods->xCheckReservedLock(Shim(file)->real(), out);
}
int FileControl(sqlite3_file* file, int op, void* argument) {
  return Shim(file)->real()->pMethods->xFileControl(Shim(file)->real(), op, argument);
}
int SectorSize(sqlite3_file* file) {
  return Shim(file)->real()->pMethods->xSectorSize(Shim(file)->real());
}
int DeviceCharacteristics(sqlite3_file* file) {
  return Shim(file)->real()->pMethods->xDeviceCharacteristics(Shim(file)->real());
}
int ShmMap(sqlite3_file* file, int page, int size, int extend, void volatile** out) {
  return Shim(file)->real()->pMethods->xShmMap(Shim(file)->real(), page, size, extend, out);
}
int ShmLock(sqlite3_file* file, int offset, int count, int flags) {
  // A writer takes the WAL write lock (slot 0) here rather than through
  // xLock; that is the lock another process's write holds. The read marks
  // after it are taken exclusively only for a moment, never held.
  constexpr int kWalWriteLock = 0;
  if ((flags & SQLITE_SHM_LOCK) && (flags & SQLITE_SHM_EXCLUSIVE) && offset == kWalWriteLock &&
      Fails(Fault::kLocked))
    return SQLITE_BUSY;
  return Shim(file)->real()->pMethods->xShmLock(Shim(file)->real(), offset, count, flags);
}
void ShmBarrier(sqlite3_file* file) {
  Shim(file)->real()->pMethods->xShmBarrier(Shim(file)->real());
}
int ShmUnmap(sqlite3_file* file, int remove) {
  return Shim(file)->real()->pMethods->xShmUnmap(Shim(file)->real(), remove);
}
int Fetch(sqlite3_file* file, sqlite3_int64 offset, int amount, void** out) {
  return Shim(file)->real()->pMethods->xFetch(Shim(file)->real(), offset, amount, out);
}
int Unfetch(sqlite3_file* file, sqlite3_int64 offset, void* page) {
  return Shim(file)->real()->pMethods->xUnfetch(Shim(file)->real(), offset, page);
}

const sqlite3_io_methods kMethods = {3,
                                     Close,
                                     Read,
                                     Write,
                                     Truncate,
                                     Sync,
                                     FileSize,
                                     Lock,
                                     Unlock,
                                     CheckReservedLock,
                                     FileControl,
                                     SectorSize,
                                     DeviceCharacteristics,
                                     ShmMap,
                                     ShmLock,
                                     ShmBarrier,
                                     ShmUnmap,
                                     Fetch,
                                     Unfetch};

int Open(sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* out_flags) {
  file->pMethods = nullptr;
  if (Fails(Fault::kOpenError)) return SQLITE_CANTOPEN;
  if (armed.load() == Fault::kReadOnly && (flags & SQLITE_OPEN_READWRITE)) {
    ++injected;
    // As the system's VFS does when the file system refuses writing.
    flags = (flags & ~(SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE)) | SQLITE_OPEN_READONLY;
  }
  ShimFile* shim = Shim(file);
  int result = real_vfs->xOpen(real_vfs, name, shim->real(), flags, out_flags);
  if (result != SQLITE_OK) return result;
  shim->base.pMethods = &kMethods;
  return SQLITE_OK;
}

}  // namespace

void InstallFaultVfs() {
  if (!real_vfs) {
    real_vfs = sqlite3_vfs_find(nullptr);
    shim_vfs = *real_vfs;
    shim_vfs.zName = kFaultVfsName;
    shim_vfs.szOsFile = static_cast<int>(sizeof(ShimFile)) + real_vfs->szOsFile;
    shim_vfs.xOpen = Open;
    shim_vfs.pNext = nullptr;
    sqlite3_vfs_register(&shim_vfs, 0);
  }
  ::setenv("SELUVORNE_SQLITE_VFS", kFaultVfsName, 1);
}

void Arm(Fault fault, int skip) {
  skip_left = skip;
  injected = 0;
  armed = fault;
}

void Disarm() {
  armed = Fault::kNone;
}

int FaultsInjected() {
  return injected.load();
}

}  // namespace seluvorne::testing
