// A fault-injecting SQLite VFS for tests: a thin shim over the system's
// default VFS that passes every call through until it is armed, then fails
// the Nth write, sync, open or lock the way a full disk, a failing disk, a
// read-only file system or another process's lock would.
//
// The engine opens its files through a VFS named by SELUVORNE_SQLITE_VFS
// (read once); InstallFaultVfs registers the shim and sets that variable, so
// it must run before the process opens its first database.
#pragma once

namespace seluvorne::testing {

inline constexpr const char* kFaultVfsName = "seluvorne-faults";

enum class Fault {
  kNone,
  kWriteError,  // a write fails: SQLITE_IOERR_WRITE
  kDiskFull,    // a write finds the disk full: SQLITE_FULL
  kSyncError,   // a sync fails: SQLITE_IOERR_FSYNC
  kOpenError,   // an open fails: SQLITE_CANTOPEN
  kReadOnly,    // files open read-only, as on a read-only file system
  kLocked,      // a lock is held by someone else: SQLITE_BUSY
};

// Registers the shim (once) and points the engine at it.
void InstallFaultVfs();

// From now on, the call the fault concerns fails after `skip` such calls
// have passed, and every later one too, until Disarm.
void Arm(Fault fault, int skip = 0);
void Disarm();
// How many calls the armed fault has failed.
int FaultsInjected();

}  // namespace seluvorne::testing
