// DisplayMetrics.clsMetrics: the primary screen's size in twips (15 to a
// pixel), or that of the 1024 x 768 screen assumed without a display.

#include "components/screen_area.h"
#include "components/standalone.h"
#include "seluvorne/member_table.h"

namespace seluvorne::components {

namespace {

class DisplayMetrics : public DispatchImpl<DisplayMetrics> {
 public:
  static const MemberTable<DisplayMetrics>& Members() {
    static const auto table = MemberTable<DisplayMetrics>("clsMetrics")
                                  .get("ScreenTwipWidth", &DisplayMetrics::ScreenTwipWidth)
                                  .get("ScreenTwipHeight", &DisplayMetrics::ScreenTwipHeight);
    return table;
  }

  std::int32_t ScreenTwipWidth() const { return ScreenBounds().width * kTwipsPerPixel; }
  std::int32_t ScreenTwipHeight() const { return ScreenBounds().height * kTwipsPerPixel; }
};

}  // namespace

Object NewDisplayMetrics() {
  return std::make_shared<DisplayMetrics>();
}

}  // namespace seluvorne::components
