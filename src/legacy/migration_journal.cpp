#include "migration_journal.h"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

#include "seluvorne/error.h"

namespace seluvorne::legacy {

namespace {

constexpr const char* kJournal = "seluvorne-migration.journal";
constexpr const char* kJournalHeader = "seluvorne migration journal 1";
constexpr const char* kJournalEnd = "end";

// Makes a file's contents, or a folder's entries, durable.
void Sync(const std::filesystem::path& path, bool folder) {
  int descriptor = ::open(path.c_str(), (folder ? O_RDONLY | O_DIRECTORY : O_WRONLY) | O_CLOEXEC);
  if (descriptor < 0) Raise(errc::kPathFileAccess, path.string());
  bool synced = ::fsync(descriptor) == 0;
  ::close(descriptor);
  if (!synced) Raise(errc::kPathFileAccess, path.string());
}

void Rename(const std::filesystem::path& from, const std::filesystem::path& to) {
  std::error_code failure;
  std::filesystem::rename(from, to, failure);
  if (failure) Raise(errc::kPathFileAccess, from.string() + " -> " + to.string());
}

void RemoveIfThere(const std::filesystem::path& path) {
  std::error_code ignored;
  std::filesystem::remove(path, ignored);
}

bool Exists(const std::filesystem::path& path) {
  std::error_code ignored;
  return std::filesystem::exists(std::filesystem::symlink_status(path, ignored));
}

// The journalled file names, or nothing when the journal is absent or was
// never completed.
std::vector<std::string> ReadJournal(const std::filesystem::path& folder, bool& complete) {
  std::ifstream in(folder / kJournal);
  std::vector<std::string> files;
  std::string line;
  complete = false;
  if (!in || !std::getline(in, line) || line != kJournalHeader) return {};
  while (std::getline(in, line)) {
    if (line == kJournalEnd) {
      complete = true;
      return files;
    }
    if (line.empty() || line.find('/') != std::string::npos || line == "." || line == "..")
      return {};
    files.push_back(line);
  }
  return {};
}

}  // namespace

std::filesystem::path ConvertedCopy(const std::filesystem::path& file) {
  return file.string() + ".migrating";
}

std::filesystem::path KeptOriginal(const std::filesystem::path& file) {
  return file.string() + ".jet";
}

namespace {
int steps_done = 0;
}  // namespace

void StartCountingSteps() {
  steps_done = 0;
}

void StepDone() {
  ++steps_done;
  const char* kill_after = std::getenv("SELUVORNE_MIGRATION_KILL_AFTER");
  if (kill_after && std::atoi(kill_after) == steps_done) ::kill(::getpid(), SIGKILL);
}

void RemoveConvertedCopy(const std::filesystem::path& file) {
  std::filesystem::path copy = ConvertedCopy(file);
  RemoveIfThere(copy);
  for (const char* suffix : {"-wal", "-shm", "-journal"})
    RemoveIfThere(copy.string() + suffix);
}

void WriteJournal(const std::filesystem::path& folder, const std::vector<std::string>& files) {
  std::filesystem::path journal = folder / kJournal;
  std::filesystem::path draft = journal.string() + ".new";
  {
    std::ofstream out(draft, std::ios::trunc);
    out << kJournalHeader << '\n';
    for (const std::string& file : files)
      out << file << '\n';
    out << kJournalEnd << '\n';
    out.flush();
    if (!out) {
      RemoveIfThere(draft);
      Raise(errc::kPathFileAccess, draft.string());
    }
  }
  Sync(draft, false);
  StepDone();
  Rename(draft, journal);
  Sync(folder, true);
  StepDone();
}

void FinishReplacements(const std::filesystem::path& folder,
                        const std::vector<std::string>& files) {
  for (const std::string& name : files) {
    std::filesystem::path file = folder / name;
    if (!Exists(ConvertedCopy(file))) continue;  // replaced before
    if (!Exists(KeptOriginal(file))) {
      Rename(file, KeptOriginal(file));
      StepDone();
    }
    Rename(ConvertedCopy(file), file);
    StepDone();
  }
  Sync(folder, true);
  std::error_code failure;
  std::filesystem::remove(folder / kJournal, failure);
  if (failure) Raise(errc::kPathFileAccess, (folder / kJournal).string());
  Sync(folder, true);
  StepDone();
}

void RecoverFolder(const std::filesystem::path& folder) {
  bool complete = false;
  std::vector<std::string> files = ReadJournal(folder, complete);
  if (complete) {
    FinishReplacements(folder, files);
    return;
  }
  RemoveIfThere(folder / kJournal);
  RemoveIfThere((folder / kJournal).string() + ".new");
  std::vector<std::filesystem::path> unfinished;
  std::error_code ignored;
  for (const auto& entry : std::filesystem::directory_iterator(folder, ignored)) {
    std::string name = entry.path().filename().string();
    auto at = name.rfind(".migrating");
    if (at != std::string::npos && at > 0) unfinished.push_back(folder / name.substr(0, at));
  }
  for (const auto& file : unfinished)
    RemoveConvertedCopy(file);
}

}  // namespace seluvorne::legacy
