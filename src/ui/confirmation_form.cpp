#include "ui/confirmation_form.h"

#include <QLabel>
#include <QVBoxLayout>

#include "ui/japanese_font.h"
#include "ui/widget_object.h"

namespace seluvorne::ui {

namespace {

// frmKakunin as the late-bound object: the members of every window, the
// label, and the form's own three members.
class KakuninObject : public DispatchImpl<KakuninObject, WidgetMembers> {
 public:
  explicit KakuninObject(frmKakunin* form)
      : DispatchImpl(form), label_(std::make_shared<ControlObject>(form->lblKakunin)) {}

  static const MemberTable<KakuninObject>& Members() {
    static const auto table = WidgetMemberTable<KakuninObject>("frmKakunin")
                                  .get("lblKakunin", &KakuninObject::lblKakunin)
                                  .method("SetFormControl", &KakuninObject::SetFormControl)
                                  .method("PlaceForm", &KakuninObject::PlaceForm)
                                  .method("FollowPlacement", &KakuninObject::FollowPlacement);
    return table;
  }

  Object lblKakunin() const { return label_; }
  void SetFormControl(std::int16_t enable) { form().SetFormControl(enable); }
  void PlaceForm(Object& target, std::int16_t setProperty) {
    form().PlaceForm(target, setProperty);
  }
  void FollowPlacement(std::int16_t setProperty) { form().FollowPlacement(setProperty); }

 private:
  frmKakunin& form() const { return static_cast<frmKakunin&>(widget()); }
  Object label_;
};

}  // namespace

frmKakunin::frmKakunin() : lblKakunin(new QLabel(QString::fromUtf8(kDesignCaption), this)) {
  setObjectName("frmKakunin");
  setWindowTitle(QString::fromUtf8("確認"));
  // It accompanies the modal selection dialog: above it, without taking its focus.
  setWindowFlags(Qt::Window | Qt::WindowStaysOnTopHint);
  setAttribute(Qt::WA_ShowWithoutActivating);
  setAttribute(Qt::WA_DeleteOnClose);

  lblKakunin->setObjectName("lblKakunin");
  lblKakunin->setFont(JapaneseFont(QString::fromUtf8(kDesignFont), 12));
  lblKakunin->setAlignment(Qt::AlignCenter);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(16, 12, 16, 12);
  layout->addWidget(lblKakunin);
  setFixedSize(360, 64);

  object_ = std::make_shared<KakuninObject>(this);
}

frmKakunin::~frmKakunin() {
  SetFormControl(false);
}

void frmKakunin::Load() {
  SetFormControl(true);
}

void frmKakunin::SetFormControl(std::int16_t enable) {
  if (enable != 0) {
    placer_ = frame::WindowPlacer::Create();
    placement_active_ = placer_.FormControl();
  } else {
    placer_ = frame::WindowPlacer();
  }
}

void frmKakunin::PlaceForm(Object& form, std::int16_t setProperty) {
  if (!placement_active_) return;
  if (setProperty != 0)
    placer_.MotoFormSetFormProperty(form, placement_first_, placement_second_);
  else
    placer_.MotoFormMoveGamenSoto(form, placement_first_, placement_second_);
}

void frmKakunin::FollowPlacement(std::int16_t setProperty) {
  if (!isVisible()) return;
  Object self = object_;
  PlaceForm(self, setProperty);
}

}  // namespace seluvorne::ui
