// The confirmation message, and the frame's two uses of the window layer.

#include "seluvorne/frame.h"

namespace seluvorne::frame {

void ShowCalcTargetMessage(std::int16_t isOobari) {
  const bool girder = isOobari != 0;
  const bool build_out_only = gFukasiOnly != 0;
  const char* caption =
      girder
          ? (build_out_only ? "大梁のフカシのみ計算されます" : "大梁の本体とフカシが計算されます")
          : (build_out_only ? "小梁のフカシのみ計算されます" : "小梁の本体とフカシが計算されます");
  InstalledForms().ShowKakunin(caption);
}

Forms& InstalledForms() {
  if (!gForms) Raise(errc::kCannotCreateObject, "(no display layer installed)");
  return *gForms;
}

void DoEvents() {
  if (gForms) gForms->DoEvents();
}

}  // namespace seluvorne::frame
