// Checks of a database file as a whole, for tools that look after floors:
// what kind of file it is, and whether its storage is sound.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace seluvorne::files {

enum class DatabaseFormat {
  kMissing,  // no such file
  kNative,   // a database of this library
  kLegacy,   // a Jet file of the original platform (see the migration)
  kOther,    // anything else
};

DatabaseFormat FormatOf(const std::filesystem::path& file);

// The storage engine's own integrity check of `file`, opened read-only
// beside any other handle: empty when it is sound, else one line per
// problem. Raises 3024 for a missing file and 3343 for one that is no
// database of this library.
std::vector<std::string> IntegrityProblems(const std::filesystem::path& file);

}  // namespace seluvorne::files
