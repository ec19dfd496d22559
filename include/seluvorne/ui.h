// The window layer, for the library's own start-up: the Qt implementation of
// the frame's Forms. Creating it opens no window; the first form shown
// creates the QApplication when the host has none.
#pragma once

#include <memory>

#include "seluvorne/frame.h"

namespace seluvorne::ui {

std::shared_ptr<frame::Forms> CreateForms();

}  // namespace seluvorne::ui
