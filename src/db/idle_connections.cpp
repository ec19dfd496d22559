#include "idle_connections.h"

#include <pthread.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <mutex>
#include <thread>
#include <vector>

#include "connection.h"

namespace seluvorne::db {

namespace {

using Clock = std::chrono::steady_clock;

struct Entry {
  std::unique_ptr<Connection> connection;
  std::filesystem::path path;
  FileStatus status;
  Clock::time_point deadline;
  pid_t owner = 0;  // the process that opened it
};

// Never destroyed: handles, and so idle connections, may outlive main; the
// exit handler closes what is left.
struct IdleList {
  std::mutex mutex;
  std::mutex closing;  // held by the background thread while it closes connections
  std::condition_variable wake;
  std::vector<Entry> entries;  // oldest first
  pid_t sweeper = 0;           // the process whose thread closes expired entries
  bool exiting = false;
};

IdleList& TheList() {
  static IdleList* list = [] {
    // A fork waits until the background thread is between closes, so that
    // the child never starts with a lock (the list's, or SQLite's own inside
    // a close) held by a thread it does not have.
    pthread_atfork([] { TheList().closing.lock(), TheList().mutex.lock(); },
                   [] { TheList().mutex.unlock(), TheList().closing.unlock(); },
                   [] { TheList().mutex.unlock(), TheList().closing.unlock(); });
    return new IdleList;
  }();
  return *list;
}

// Closes the connections of `closing`, outside the list's lock. A connection
// whose path now names another file (or none) leaves the log files at that
// path alone: they may belong to the file that replaced it.
void CloseAll(std::vector<Entry>& closing) {
  for (Entry& entry : closing) {
    if (entry.owner != ::getpid()) {
      entry.connection.release();  // the parent's: neither used nor closed here
      continue;
    }
    FileStatus now;
    if (!StatusOf(entry.path, now) || now.device != entry.status.device ||
        now.inode != entry.status.inode)
      entry.connection->LeaveCompanionFiles();
    entry.connection.reset();
  }
  closing.clear();
}

// Moves the entries that `leaves` picks to `closing`; the caller holds the lock.
template <class Predicate>
void Remove(IdleList& list, std::vector<Entry>& closing, Predicate leaves) {
  for (auto it = list.entries.begin(); it != list.entries.end();) {
    if (leaves(*it)) {
      closing.push_back(std::move(*it));
      it = list.entries.erase(it);
    } else {
      ++it;
    }
  }
}

void Sweep() {
  IdleList& list = TheList();
  std::vector<Entry> closing;
  for (;;) {
    {
      std::unique_lock lock(list.mutex);
      if (list.exiting) return;
      if (list.entries.empty()) {
        list.wake.wait(lock);
      } else {
        const Clock::time_point first = list.entries.front().deadline;  // a copy: entries change
        list.wake.wait_until(lock, first);
      }
      if (list.exiting) return;
      const Clock::time_point now = Clock::now();
      Remove(list, closing, [&](const Entry& entry) { return entry.deadline <= now; });
    }
    std::lock_guard hold(list.closing);
    CloseAll(closing);
  }
}

void CloseAtExit() {
  IdleList& list = TheList();
  std::vector<Entry> closing;
  {
    std::lock_guard lock(list.mutex);
    list.exiting = true;
    closing = std::move(list.entries);
    list.entries.clear();
  }
  list.wake.notify_all();
  CloseAll(closing);
}

}  // namespace

bool StatusOf(const std::filesystem::path& path, FileStatus& status) {
  struct stat file {};
  if (::stat(path.c_str(), &file) != 0) return false;
  status = {static_cast<std::uint64_t>(file.st_dev),
            static_cast<std::uint64_t>(file.st_ino),
            static_cast<std::uint64_t>(file.st_nlink),
            static_cast<std::uint64_t>(file.st_size),
            static_cast<std::int64_t>(file.st_mtim.tv_sec),
            static_cast<std::int64_t>(file.st_mtim.tv_nsec)};
  return true;
}

void IdleConnections::Keep(std::unique_ptr<Connection> connection,
                           const std::filesystem::path& path, const FileStatus& status) {
  IdleList& list = TheList();
  std::vector<Entry> closing;
  {
    std::lock_guard lock(list.mutex);
    const pid_t self = ::getpid();
    if (list.exiting) {
      closing.push_back({std::move(connection), path, status, {}, self});
    } else {
      // Entries inherited through a fork are forgotten, not closed.
      Remove(list, closing, [&](const Entry& entry) { return entry.owner != self; });
      list.entries.push_back({std::move(connection), path, status,
                              Clock::now() + std::chrono::milliseconds(kLingerMilliseconds), self});
      while (list.entries.size() > kCapacity) {
        closing.push_back(std::move(list.entries.front()));
        list.entries.erase(list.entries.begin());
      }
      if (list.sweeper != self) {
        if (list.sweeper == 0) std::atexit(CloseAtExit);
        list.sweeper = self;
        std::thread(Sweep).detach();
      }
    }
  }
  list.wake.notify_all();
  CloseAll(closing);
}

std::unique_ptr<Connection> IdleConnections::Take(const std::filesystem::path& path,
                                                  const FileStatus& status) {
  IdleList& list = TheList();
  std::vector<Entry> closing;
  std::unique_ptr<Connection> taken;
  {
    std::lock_guard lock(list.mutex);
    const pid_t self = ::getpid();
    for (auto it = list.entries.begin(); it != list.entries.end(); ++it) {
      if (it->owner != self || it->path != path) continue;
      if (it->status == status)
        taken = std::move(it->connection);
      else
        closing.push_back(std::move(*it));
      list.entries.erase(it);
      break;
    }
  }
  CloseAll(closing);
  return taken;
}

void IdleConnections::Close(const std::filesystem::path& path) {
  IdleList& list = TheList();
  FileStatus named;
  const bool exists = StatusOf(path, named);
  std::vector<Entry> closing;
  {
    std::lock_guard lock(list.mutex);
    Remove(list, closing, [&](const Entry& entry) {
      return entry.path == path ||
             (exists && entry.status.device == named.device && entry.status.inode == named.inode);
    });
  }
  CloseAll(closing);
}

}  // namespace seluvorne::db
