#include "migration_journal.h"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

#include "seluvorne/durable_file.h"
#include "seluvorne/error.h"

namespace seluvorne::legacy {

namespace {

constexpr const char* kJournal = "seluvorne-migration.journal";
constexpr const char* kJournalHeader = "seluvorne migration journal 1";
constexpr const char* kJournalEnd = "end";

// Makes a file's contents, or a folder's entries, durable.
void Sync(const std::filesystem::path& path, bool folder) {
  if (SyncPath(path, folder) != 0) Raise(errc::kPathFileAccess, path.string());
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
  const std::filesystem::path journal = folder / kJournal;
  std::string text = std::string(kJournalHeader) + '\n';
  for (const std::string& file : files)
    text += file + '\n';
  text += std::string(kJournalEnd) + '\n';
  if (ReplaceFileDurably(journal, text) != 0) Raise(errc::kPathFileAccess, journal.string());
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
  std::vector<std::filesystem::path> unfinished;
  std::error_code ignored;
  for (const auto& entry : std::filesystem::directory_iterator(folder, ignored)) {
    std::string name = entry.path().filename().string();
    // A journal a killed run was writing (ReplaceFileDurably's temporary file).
    if (name.starts_with(std::string(kJournal) + ".") && name.ends_with(".tmp"))
      RemoveIfThere(entry.path());
    auto at = name.rfind(".migrating");
    if (at != std::string::npos && at > 0) unfinished.push_back(folder / name.substr(0, at));
  }
  for (const auto& file : unfinished)
    RemoveConvertedCopy(file);
}

}  // namespace seluvorne::legacy
