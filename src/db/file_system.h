// Which journal a database file can use where it lies.
//
// WAL keeps its index in shared memory, which only processes of one machine
// share: two workstations writing one file on a network share in WAL mode can
// corrupt it. A file on a network file system therefore uses the rollback
// journal, whose safety rests on the share's byte-range locks alone.
#pragma once

#include <filesystem>
#include <functional>

namespace seluvorne::db {

// Whether the folder holding `path` is on a network file system: NFS,
// SMB/SMB2/CIFS, AFS, Coda, 9P, Ceph, Lustre, GPFS, and FUSE (sshfs and
// cloud mounts are FUSE file systems, and FUSE does not tell them from local
// ones; a local FUSE file system only loses WAL's speed).
bool OnNetworkFileSystem(const std::filesystem::path& path);

// The statfs(2) f_type of a folder; replaceable so that a test can fake a
// share. An empty function restores statfs.
using FileSystemTypeProbe = std::function<long(const std::filesystem::path& folder)>;
void SetFileSystemTypeProbe(FileSystemTypeProbe probe);

}  // namespace seluvorne::db
