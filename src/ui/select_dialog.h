// frmSelect: the modal list in which the user picks one beam or several of
// the current floor. The page directory fills lstDlist ("  1: X1" per page),
// chooses the mode, hands over the two remembered values and shows it; the
// dialog answers a packed page list ("*" and the page number each selected
// item begins with, as three digits, in list order: "*003010") or "ToMenu".
//
//   multi-select   cmdAll(0) selects all (F7), cmdAll(1) clears (F8), cmdEnd
//                  confirms (F11), cmdToMenu goes back (F12)
//   single-select  cmdAll, cmdEnd, lblFukusuu and lblFuncKey are hidden; one
//                  click on a beam confirms it; no function key acts
//
// A function key acts only while its button and its label are both visible.
// chkKakuninzu asks for the 3-D confirmation drawing of the listed beams: the
// screen and drawing checks, then exporter, presenter and viewer, all outside
// components reached by name; the viewer's end status decides what follows
// (ViewerEnded). Typing "XANTHOPARVELIMO" on chkKakuninzu turns on the hidden
// debug mode, which shows chkD3MakeFile.
//
// Placement: loading places the dialog through FolderKit.clsWindowPlacer and
// then lets frmKakunin follow; on activation, while the whole calculation runs
// and its window was last minimised, the dialog moves off the screen.
#pragma once

#include <QDialog>
#include <array>
#include <cstdint>
#include <exception>
#include <functional>
#include <string>

#include "seluvorne/collaborators.h"
#include "seluvorne/frame.h"

class QCheckBox;
class QFrame;
class QLabel;
class QListWidget;
class QPushButton;

namespace seluvorne::ui {

class frmSelect : public QDialog, public frame::SelectDialog {
 public:
  static constexpr const char* kDebugWord = "XANTHOPARVELIMO";
  // The runtime's key codes of the four function keys.
  static constexpr int kKeyF7 = 118, kKeyF8 = 119, kKeyF11 = 122, kKeyF12 = 123;

  // `follow` lets frmKakunin follow each placement, with the same flag.
  explicit frmSelect(std::function<void(std::int16_t)> follow);
  ~frmSelect() override;

  QListWidget* const lstDlist;
  QFrame* const fraCmd;
  const std::array<QPushButton*, 2> cmdAll;
  QPushButton* const cmdEnd;
  QPushButton* const cmdToMenu;
  QCheckBox* const chkKakuninzu;
  QCheckBox* const chkD3MakeFile;
  const std::array<QLabel*, 4> lblFuncKey;
  QLabel* const lblFukusuu;
  QLabel* const Label1;

  // Form load: the placement object, and the first placement when active.
  void Load();

  // ---- As the page directory drives it -------------------------------------
  void ClearList() override;
  void AddItem(const std::string& item) override;
  void SetMultiSelect(bool multi) override;
  void SetToMenuCaption(const std::string& caption) override;
  std::int16_t EnableKakuninzu() const override { return enable_kakuninzu_; }
  // Non-zero shows chkKakuninzu, zero hides it.
  void SetEnableKakuninzu(std::int16_t value) override;
  std::int16_t chkKakuninzuChecked() const override { return kakuninzu_checked_; }
  void SetChkKakuninzuChecked(std::int16_t value) override { kakuninzu_checked_ = value; }
  // Shows the dialog modally and returns when it has closed. An error raised
  // while it showed (a failing outside component) closes it and is raised here.
  void ShowModal() override;
  std::string Result() const override { return result_; }

  // ---- What the controls do --------------------------------------------------
  void cmdAll_Click(std::int16_t Index);
  void cmdEnd_Click();
  void cmdToMenu_Click();
  void lstDlist_Click();
  // The one key handler of the list and the four buttons (runtime key codes).
  void FunctionKey(int key_code);
  // The key-down of chkKakuninzu: the debug word.
  void chkKakuninzu_KeyDown(int key_code);

  bool DebugMode() const { return debug_mode_; }
  // How the last confirmation-drawing run ended: the viewer's end status; 0
  // before any run.
  std::int16_t LastViewerStatus() const { return viewer_status_; }
  // The dialog as the late-bound object the placement service receives.
  const Object& AsObject() const { return object_; }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  bool event(QEvent* event) override;

 private:
  // Runs what a control's event does. Errors must not cross Qt's event loop:
  // one is kept, the dialog closes, and ShowModal raises it.
  template <class Action>
  void Guarded(Action&& action);
  // Places the dialog (setProperty non-zero) or moves it off the screen, then
  // lets window messages run and frmKakunin follow.
  void Place(std::int16_t setProperty);
  // chkKakuninzu's value became 1.
  void ConfirmationDrawing();
  // The environment and drawing-file checks; false after their message.
  bool CanDraw(std::int32_t& width, std::int32_t& height);
  void ViewerEnded(std::int16_t status, const std::string& chosen);
  std::string SelectedPages() const;
  std::string ItemsText() const;
  void SelectPages(const std::string& packed);
  bool Shows(const QWidget* control) const;

  std::function<void(std::int16_t)> follow_;
  frame::WindowPlacer placer_;
  bool placement_active_ = false;
  std::int32_t placement_first_ = 0;  // the placement record; its meaning is the service's
  std::int32_t placement_second_ = 0;
  frame::ScopeKit scope_kit_;  // made at the first confirmation drawing
  std::string result_;
  std::int16_t enable_kakuninzu_ = 0;
  std::int16_t kakuninzu_checked_ = 0;
  std::string typed_keys_;
  bool debug_mode_ = false;
  std::int16_t viewer_status_ = 0;
  std::exception_ptr pending_error_;
  Object object_;
};

}  // namespace seluvorne::ui
