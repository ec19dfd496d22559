// FolderKit.clsWindowPlacer: a plain placement. Placement is always active;
// MotoFormSetFormProperty centres the form in the screen work area and
// MotoFormMoveGamenSoto moves it just past the work area's right edge. Both
// leave the form's position before the move in the placement record
// (first = Left, second = Top, in twips). No calculation window exists here,
// so it was never minimised, and windows have no extra shadow.

#include <algorithm>

#include "components/screen_area.h"
#include "components/standalone.h"
#include "seluvorne/call_by_name.h"
#include "seluvorne/member_table.h"
#include "seluvorne/runtime.h"

namespace seluvorne::components {

namespace {

std::int32_t Twips(std::int32_t pixels) {
  return pixels * kTwipsPerPixel;
}

std::int32_t Read(const Object& form, std::string_view member) {
  return vb::CLng(CallByName(form, member, CallKind::PropertyGet));
}

void Write(const Object& form, std::string_view member, std::int32_t twips) {
  CallByName(form, member, CallKind::PropertyPut, twips);
}

class WindowPlacer : public DispatchImpl<WindowPlacer> {
 public:
  static const MemberTable<WindowPlacer>& Members() {
    static const auto table =
        MemberTable<WindowPlacer>("clsWindowPlacer")
            .get("FormControl", &WindowPlacer::FormControl)
            .method("ScreenWorkAreaTwip", &WindowPlacer::ScreenWorkAreaTwip)
            .method("MotoFormSetFormProperty", &WindowPlacer::MotoFormSetFormProperty)
            .method("MotoFormMoveGamenSoto", &WindowPlacer::MotoFormMoveGamenSoto)
            .get("GetAllCalcWindowStateLastVal_isMinimized",
                 &WindowPlacer::GetAllCalcWindowStateLastVal_isMinimized)
            .get("Vista_Shadow", &WindowPlacer::Vista_Shadow);
    return table;
  }

  bool FormControl() const { return true; }

  void ScreenWorkAreaTwip(std::int32_t& left, std::int32_t& top, std::int32_t& right,
                          std::int32_t& bottom) const {
    const ScreenRect area = ScreenWorkArea();
    left = Twips(area.left);
    top = Twips(area.top);
    right = Twips(area.left + area.width);
    bottom = Twips(area.top + area.height);
  }

  void MotoFormSetFormProperty(Object& form, std::int32_t& first, std::int32_t& second) const {
    std::int32_t left, top, right, bottom;
    ScreenWorkAreaTwip(left, top, right, bottom);
    Remember(form, first, second);
    // A form larger than the work area keeps its top-left corner inside it.
    Write(form, "Left", std::max(left, left + (right - left - Read(form, "Width")) / 2));
    Write(form, "Top", std::max(top, top + (bottom - top - Read(form, "Height")) / 2));
  }

  void MotoFormMoveGamenSoto(Object& form, std::int32_t& first, std::int32_t& second) const {
    std::int32_t left, top, right, bottom;
    ScreenWorkAreaTwip(left, top, right, bottom);
    Remember(form, first, second);
    Write(form, "Left", right);
  }

  bool GetAllCalcWindowStateLastVal_isMinimized() const { return false; }
  std::int32_t Vista_Shadow() const { return 0; }

 private:
  static void Remember(const Object& form, std::int32_t& first, std::int32_t& second) {
    first = Read(form, "Left");
    second = Read(form, "Top");
  }
};

}  // namespace

Object NewWindowPlacer() {
  return std::make_shared<WindowPlacer>();
}

}  // namespace seluvorne::components
