#include "fake_forms.h"

#include <memory>

namespace seluvorne::fakes {

void RecordingSelectDialog::Record(std::string call) const {
  forms_.log.push_back(std::move(call));
}

void RecordingSelectDialog::ClearList() {
  Record("ClearList");
  items.clear();
}
void RecordingSelectDialog::AddItem(const std::string& item) {
  Record("AddItem(" + item + ")");
  items.push_back(item);
}
void RecordingSelectDialog::SetMultiSelect(bool value) {
  Record(std::string("SetMultiSelect(") + (value ? "true" : "false") + ")");
  multi = value;
}
void RecordingSelectDialog::SetToMenuCaption(const std::string& caption) {
  Record("SetToMenuCaption(" + caption + ")");
  to_menu_caption = caption;
}
std::int16_t RecordingSelectDialog::EnableKakuninzu() const {
  Record("EnableKakuninzu");
  return enable_kakuninzu;
}
void RecordingSelectDialog::SetEnableKakuninzu(std::int16_t value) {
  Record("SetEnableKakuninzu(" + std::to_string(value) + ")");
  enable_kakuninzu = value;
}
std::int16_t RecordingSelectDialog::chkKakuninzuChecked() const {
  Record("chkKakuninzuChecked");
  return kakuninzu_checked;
}
void RecordingSelectDialog::SetChkKakuninzuChecked(std::int16_t value) {
  Record("SetChkKakuninzuChecked(" + std::to_string(value) + ")");
  kakuninzu_checked = value;
}
void RecordingSelectDialog::ShowModal() {
  Record("ShowModal");
  if (forms_.user) forms_.user(*this);
}
std::string RecordingSelectDialog::Result() const {
  Record("Result");
  return result;
}

frame::SelectDialog& RecordingForms::Select() {
  if (!dialog) {
    log.push_back("Select");
    dialog = std::make_unique<RecordingSelectDialog>(*this);
    ++dialogs_loaded;
  }
  return *dialog;
}
void RecordingForms::UnloadSelect() {
  log.push_back("UnloadSelect");
  dialog.reset();
}
void RecordingForms::ShowKakunin(const std::string& caption) {
  log.push_back("ShowKakunin(" + caption + ")");
  kakunin_captions.push_back(caption);
}
void RecordingForms::UnloadKakunin() {
  log.push_back("UnloadKakunin");
}
void RecordingForms::DoEvents() {
  log.push_back("DoEvents");
  ++event_rounds;
}

}  // namespace seluvorne::fakes
