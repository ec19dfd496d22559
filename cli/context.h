// What every subcommand of the `seluvorne` command shares: the global
// options, the library started on the standalone components, floors named on
// the command line, and the output of results and errors.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "seluvorne/dispatch.h"
#include "seluvorne/error.h"

namespace seluvorne::cli {

// A mistake in the command line itself: exit status 2.
struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// A command that ran but found something wrong (check, a refused copy): it
// has said what, and the command exits with status 1.
struct CommandFailed : std::runtime_error {
  using std::runtime_error::runtime_error;
};

struct FloorNumbers {
  std::int16_t zene = 0, kouji = 0, kai = 0;
};

// A floor as the command line names it: "Z/K/F" under the data root, or a
// floor folder.
struct Floor {
  std::string text;                     // as given
  std::string folder;                   // the library's floor path (interface text)
  std::filesystem::path native_folder;  // the same, native
  std::optional<FloorNumbers> numbers;  // known for Z/K/F and for folders under the root
  std::filesystem::path FloorFile() const { return native_folder / "SELUVORN.mdb"; }
};

// Raises the command's error `number`: the runtime's standard text (its
// placeholder filled with `detail`), then `explanation` in parentheses.
[[noreturn]] inline void Fail(int number, std::string_view detail, std::string_view explanation) {
  RaiseExplained(number, detail, explanation, "seluvorne");
}

class Context {
 public:
  std::string data_root_option;  // --data
  bool json = false;             // --json

  // Starts the library on the standalone components once: the data root
  // from --data, else SELUVORNE_DATA, else the settings file.
  void Start();
  std::string DataRoot();

  Floor ResolveFloor(const std::string& text);
  // Raises 3024 unless the floor's file exists: the members that open the
  // current floor would create a missing one, which a listing must not do.
  void RequireFloorFile(const Floor& floor);

  // The floor and member kind that the library's current-floor members see
  // (FolderKit.clsFloorDirs' CurrFloor and BuzaiNo).
  void SetCurrentFloor(const Floor& floor);
  void SetMemberKind(double buzai_no);

  // A data service on the current floor's kind settings.
  Object NewService();

 private:
  Object standalone_floor_dirs_;
};

// `text` padded with blanks to `columns` terminal columns (a double-byte
// character takes two), for tables of Japanese names.
std::string PadRight(const std::string& text, int columns);

// "1,3-5" as 1-based page numbers, in order; each within 1..500.
std::vector<int> ParsePageList(const std::string& text);
// A 1-based page number given on the command line, as the stored 0-based one.
std::int16_t StoredPage(int shown_page);

}  // namespace seluvorne::cli
