// The frame every class of the library stands on: the start routine, the
// library-wide globals, the page limit, and the confirmation message.
//
// The globals are one copy per process, shared by every instance of every
// class without locks: the library runs on its client's user-interface thread.
//
// Start-up. `Main` creates the floor-path service and the file probe and fixes
// the page limit. It runs once before the first object of the library is used:
// StartLibrary()/RestartLibrary() arm it (ScheduleStart) and every class's
// factory calls EnsureStarted() before it makes its object, so a host may
// register the outside components before or after StartLibrary(). When Main
// fails (a component is not registered), the creation that ran it raises the
// error and the next one tries again.
//
// Destruction. Every class of the library calls ReplaceSharedCollaborators()
// last in its destructor: it puts a new floor-path service and a new file
// probe in gFloorDirs and gExistProbe, so every instance still alive uses the
// new ones from then on (read the globals at each use; do not keep copies
// across calls).
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "seluvorne/collaborators.h"

namespace seluvorne::dao {
class Database;
}  // namespace seluvorne::dao

namespace seluvorne::frame {

// The two page limits and the preset that chooses between them.
inline constexpr std::int16_t kLargePageMax = 499;
inline constexpr std::int16_t kSmallPageMax = 159;
inline constexpr std::string_view kPageMaxPreset = "KutaiMaxPage";

// frmSelect, the modal beam selection list, as the page directory drives it:
// fill the list, choose the mode, hand the two remembered values over, show,
// read them and the result back.
class SelectDialog {
 public:
  virtual ~SelectDialog() = default;
  virtual void ClearList() = 0;                       // lstDlist
  virtual void AddItem(const std::string& item) = 0;  // lstDlist, at the end
  // The Visible of cmdAll(0), cmdAll(1), cmdEnd, lblFukusuu and lblFuncKey(0..3).
  virtual void SetMultiSelect(bool multi) = 0;
  virtual void SetToMenuCaption(const std::string& caption) = 0;  // cmdToMenu
  virtual std::int16_t EnableKakuninzu() const = 0;
  virtual void SetEnableKakuninzu(std::int16_t value) = 0;
  virtual std::int16_t chkKakuninzuChecked() const = 0;
  virtual void SetChkKakuninzuChecked(std::int16_t value) = 0;
  // Shows the dialog modally; returns when it has closed.
  virtual void ShowModal() = 0;
  // What the dialog answered: a packed page list, "ToMenu", or "" before any.
  virtual std::string Result() const = 0;
};

// The library's windows, as the frame and the stores reach them. The ui layer
// implements this and the library installs it in gForms at start-up, so the
// frame and the stores build and run without a display.
class Forms {
 public:
  virtual ~Forms() = default;
  // The single frmSelect, loaded now when it is not.
  virtual SelectDialog& Select() = 0;
  // Unloads frmSelect when it is loaded.
  virtual void UnloadSelect() = 0;
  // Shows frmKakunin modeless, loading its single instance when needed, with
  // `caption` in its label lblKakunin.
  virtual void ShowKakunin(const std::string& caption) = 0;
  // Unloads frmKakunin when it is loaded.
  virtual void UnloadKakunin() = 0;
  // Lets pending window messages run.
  virtual void DoEvents() = 0;
};

// ---- Library-wide globals ----------------------------------------------------

extern FloorDirs& gFloorDirs;           // the floor-path service
extern ExistProbe& gExistProbe;         // the file and folder probe
extern std::int16_t gPageMax;           // highest valid page number: 499 or 159
extern std::int16_t gFukasiOnly;        // 16-bit boolean: only the build-out is calculated
extern bool gFromBeamSolver;            // the client is the beam-calculation program
extern std::string& gYobidasiMoto;      // text naming the calling program
extern std::shared_ptr<Forms>& gForms;  // the windows; empty without a display layer

// ---- Start-up ----------------------------------------------------------------

// The start routine: gFloorDirs, gExistProbe, then LoadPageMax.
void Main();

// Recomputes gPageMax from the preset "KutaiMaxPage": its text read by Val and
// rounded to 16 bits (half to even); any non-zero value gives 499, zero 159.
void LoadPageMax();

// Resets the globals (gForms excepted) to their values before start-up and
// arms Main for the next EnsureStarted: a fresh library, as after a new load.
void ScheduleStart();

// Runs Main when it has not completed since the last ScheduleStart.
void EnsureStarted();

// ---- Instances ---------------------------------------------------------------

// The last step of every class's destructor. It cannot raise: a component
// that cannot be created leaves the old reference in its global.
void ReplaceSharedCollaborators() noexcept;

// ---- Databases ---------------------------------------------------------------

// Runs "DELETE FORM <table>;" with dbFailOnError for each table of `db`, in
// the order of its TableDefs (catalogue tables first). The keyword is kept
// as the suite's clients have always sent it: the engine rejects the first
// statement (3131), which ends the loop and reaches the caller, and no row
// is deleted.
void ClearAllTables(dao::Database& db);

// ---- Windows -----------------------------------------------------------------

// Shows frmKakunin with what the beam calculation will cover: a girder when
// isOobari is non-zero, else a secondary beam; the build-out only when
// gFukasiOnly is non-zero, else main body and build-out. Raises 429 when no
// display layer is installed.
void ShowCalcTargetMessage(std::int16_t isOobari);

// Lets pending window messages run; nothing without a display layer.
void DoEvents();

// The installed window layer; 429 when there is none.
Forms& InstalledForms();

}  // namespace seluvorne::frame
