// frmKakunin: the small modeless window that tells the user what the beam
// calculation will cover. It holds one label, lblKakunin, whose text the
// frame's ShowCalcTargetMessage sets, and it follows the selection dialog
// when that is placed or moved off the screen.
//
// Lifetime, as the suite's forms: QtForms makes the single instance on first
// use and calls Load(), which asks the window-placement service whether
// placement is active (SetFormControl(true)); destroying the form unloads it,
// which releases the service (SetFormControl(false)). Closing the window
// destroys it too.
#pragma once

#include <QWidget>
#include <cstdint>

#include "seluvorne/collaborators.h"

class QLabel;

namespace seluvorne::ui {

class frmKakunin : public QWidget {
 public:
  // The label's design-time text and font.
  static constexpr const char* kDesignCaption = "ふかしのみ計算されます";
  static constexpr const char* kDesignFont = "ＭＳ Ｐゴシック";

  frmKakunin();
  ~frmKakunin() override;

  QLabel* const lblKakunin;

  // Form load: SetFormControl(true). Raises what the placement service raises.
  void Load();

  // True (non-zero) creates the placement object and keeps whether placement
  // is active (its FormControl); false releases the placement object.
  void SetFormControl(std::int16_t enable);
  // Places `form` through the placement service when placement is active:
  // MotoFormSetFormProperty when `setProperty` is non-zero, else
  // MotoFormMoveGamenSoto, each with the form and the two values of this
  // form's placement record, all by reference.
  void PlaceForm(Object& form, std::int16_t setProperty);
  // When this form is visible, PlaceForm(this form, setProperty); else nothing.
  // The selection dialog calls it after placing itself with the same flag.
  void FollowPlacement(std::int16_t setProperty);

  // This form as the late-bound object the placement service receives.
  const Object& AsObject() const { return object_; }

 private:
  frame::WindowPlacer placer_;
  bool placement_active_ = false;
  std::int32_t placement_first_ = 0;  // the placement record; its meaning is the service's
  std::int32_t placement_second_ = 0;
  Object object_;
};

}  // namespace seluvorne::ui
