// The library's windows in Qt: the single instances of its forms.
#pragma once

#include <QPointer>

#include "seluvorne/frame.h"
#include "ui/confirmation_form.h"
#include "ui/select_dialog.h"

namespace seluvorne::ui {

class QtForms : public frame::Forms {
 public:
  // The single frmSelect, loaded now when it is not; frmKakunin follows its
  // placements.
  frmSelect& Select() override;
  void UnloadSelect() override;

  void ShowKakunin(const std::string& caption) override;
  void UnloadKakunin() override;
  void DoEvents() override;

  // The single frmKakunin, loaded now when it is not (as a reference to the
  // suite's default form instance loads it).
  frmKakunin& Kakunin();
  // The single frmKakunin when it is loaded, else null.
  frmKakunin* LoadedKakunin() const { return kakunin_; }

 private:
  QPointer<frmKakunin> kakunin_;
  QPointer<frmSelect> select_;
};

}  // namespace seluvorne::ui
