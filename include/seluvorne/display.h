// The screen, for placement and metrics, without Qt in the interface.
//
// Window geometry crosses the late-bound interface in twips, as the suite's
// placement services count it: 15 twips to a pixel.
#pragma once

#include <cstdint>
#include <optional>

namespace seluvorne {

inline constexpr std::int32_t kTwipsPerPixel = 15;

struct ScreenRect {  // pixels
  std::int32_t left = 0;
  std::int32_t top = 0;
  std::int32_t width = 0;
  std::int32_t height = 0;
};

// The primary screen and its work area (without task bars) while this process
// runs a GUI application; nullopt when it has opened no display.
std::optional<ScreenRect> PrimaryScreenBounds();
std::optional<ScreenRect> PrimaryScreenWorkArea();

}  // namespace seluvorne
