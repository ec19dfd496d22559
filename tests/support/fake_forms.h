// The library's windows as a recording stand-in, so the frame and the stores
// run without a display.
//
// Every call on the forms and on the selection dialog goes into one log, in
// order ("Select", "AddItem(  1: X1)", "SetEnableKakuninzu(-1)", "ShowModal",
// "ShowKakunin(...)"). ShowModal runs the test's `user` with the dialog, which
// plays the user: it sets the result and the two values the dialog hands back.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "seluvorne/frame.h"

namespace seluvorne::fakes {

class RecordingForms;

class RecordingSelectDialog : public frame::SelectDialog {
 public:
  explicit RecordingSelectDialog(RecordingForms& forms) : forms_(forms) {}

  void ClearList() override;
  void AddItem(const std::string& item) override;
  void SetMultiSelect(bool multi) override;
  void SetToMenuCaption(const std::string& caption) override;
  std::int16_t EnableKakuninzu() const override;
  void SetEnableKakuninzu(std::int16_t value) override;
  std::int16_t chkKakuninzuChecked() const override;
  void SetChkKakuninzuChecked(std::int16_t value) override;
  void ShowModal() override;
  std::string Result() const override;

  // What the dialog holds; the user sets `result` and the two values.
  std::vector<std::string> items;
  bool multi = false;
  std::string to_menu_caption;
  std::int16_t enable_kakuninzu = 0;
  std::int16_t kakuninzu_checked = 0;
  std::string result;

 private:
  void Record(std::string call) const;
  RecordingForms& forms_;
};

class RecordingForms : public frame::Forms {
 public:
  frame::SelectDialog& Select() override;
  void UnloadSelect() override;
  void ShowKakunin(const std::string& caption) override;
  void UnloadKakunin() override;
  void DoEvents() override;

  // Plays the user while the dialog shows; nothing by default.
  std::function<void(RecordingSelectDialog&)> user;
  std::vector<std::string> log;
  // The loaded dialog (null when unloaded), how often one was loaded.
  std::unique_ptr<RecordingSelectDialog> dialog;
  int dialogs_loaded = 0;
  std::vector<std::string> kakunin_captions;
  int event_rounds = 0;
};

}  // namespace seluvorne::fakes
