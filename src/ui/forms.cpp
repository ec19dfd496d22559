#include "ui/forms.h"

#include <QLabel>
#include <memory>

#include "seluvorne/ui.h"
#include "ui/application.h"

namespace seluvorne::ui {

frmSelect& QtForms::Select() {
  if (!select_) {
    EnsureApplication();
    auto dialog = std::make_unique<frmSelect>([this](std::int16_t setProperty) {
      if (kakunin_) kakunin_->FollowPlacement(setProperty);
    });
    dialog->Load();  // when it raises, the dialog is destroyed again
    select_ = dialog.release();
  }
  return *select_;
}

void QtForms::UnloadSelect() {
  delete select_.data();
}

void QtForms::ShowKakunin(const std::string& caption) {
  frmKakunin& form = Kakunin();
  form.show();
  form.lblKakunin->setText(QString::fromStdString(caption));
}

void QtForms::UnloadKakunin() {
  delete kakunin_.data();
}

void QtForms::DoEvents() {
  ProcessPendingEvents();
}

frmKakunin& QtForms::Kakunin() {
  if (!kakunin_) {
    EnsureApplication();
    auto form = std::make_unique<frmKakunin>();
    form->Load();  // when it raises, the form is destroyed again
    kakunin_ = form.release();
  }
  return *kakunin_;
}

std::shared_ptr<frame::Forms> CreateForms() {
  return std::make_shared<QtForms>();
}

}  // namespace seluvorne::ui
