// Checks of a database file as a whole, for tools that look after floors:
// what kind of file it is, whether its storage is sound, and what in it the
// engine did not make.
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

// The schema objects of `file` that the engine did not make, one line each:
// triggers, views, tables and indexes outside its catalogue, and tables whose
// definition differs from the catalogue's (a CHECK or UNIQUE constraint, a
// field declared otherwise). Empty when there are none. Raises as
// IntegrityProblems does.
std::vector<std::string> ForeignObjects(const std::filesystem::path& file);

// Removes what ForeignObjects lists, in one transaction, keeping every row of
// the engine's tables (a changed table is made again from the catalogue and
// its rows copied over), after keeping the file as it was beside it as
// "<file>.bak". Answers the lines removed. Raises 70 while any process has the
// file open, 3204 when "<file>.bak" exists.
std::vector<std::string> RemoveForeignObjects(const std::filesystem::path& file);

}  // namespace seluvorne::files
