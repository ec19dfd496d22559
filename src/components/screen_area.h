// The screen the standalone placement and metrics use: the primary screen
// while the process shows windows, else a 1024 x 768 pixel screen at the
// origin, the smallest the suite's windows are laid out for.
#pragma once

#include "seluvorne/display.h"

namespace seluvorne::components {

inline constexpr ScreenRect kScreenWithoutDisplay{0, 0, 1024, 768};

inline ScreenRect ScreenBounds() {
  return PrimaryScreenBounds().value_or(kScreenWithoutDisplay);
}
inline ScreenRect ScreenWorkArea() {
  return PrimaryScreenWorkArea().value_or(kScreenWithoutDisplay);
}

}  // namespace seluvorne::components
