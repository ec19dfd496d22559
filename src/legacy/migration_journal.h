// The migration's journal: which files of a floor folder are being replaced
// by their converted copies. It is written (atomically, by rename) only once
// every converted copy is complete and checked, and removed when every
// replacement is done, so that a run that dies at any point is finished or
// undone by the next one:
//   journal present  -> every copy is good: finish the replacements;
//   journal absent   -> copies are unfinished or unchecked: remove them.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace seluvorne::legacy {

// The names a migration uses beside a file of the floor.
std::filesystem::path ConvertedCopy(const std::filesystem::path& file);  // "<file>.migrating"
std::filesystem::path KeptOriginal(const std::filesystem::path& file);   // "<file>.jet"

// One file operation of the migration done. SELUVORNE_MIGRATION_KILL_AFTER=N
// kills the process (SIGKILL) after the N-th since StartCountingSteps, which
// the tests use to stop a migration between any two file operations.
void StartCountingSteps();
void StepDone();

// Records the files about to be replaced; durable before it returns.
void WriteJournal(const std::filesystem::path& folder, const std::vector<std::string>& files);

// Replaces each journalled file by its converted copy, keeping the original
// as "<file>.jet", then removes the journal.
void FinishReplacements(const std::filesystem::path& folder, const std::vector<std::string>& files);

// Finishes or undoes what an earlier run left in `folder`.
void RecoverFolder(const std::filesystem::path& folder);

// Removes a converted copy and the files SQLite may have left beside it.
void RemoveConvertedCopy(const std::filesystem::path& file);

}  // namespace seluvorne::legacy
