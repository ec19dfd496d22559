// Pictures of windows, for tests and for documentation.
#pragma once

#include <filesystem>

class QWidget;

namespace seluvorne::ui {

// Renders `window` (shown or not) into a PNG file; raises 75 when the file
// cannot be written.
void SaveWindowImage(QWidget& window, const std::filesystem::path& file);

}  // namespace seluvorne::ui
