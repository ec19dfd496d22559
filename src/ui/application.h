// The one QApplication of the process.
#pragma once

class QApplication;

namespace seluvorne::ui {

// The host's QApplication, or one created now when the host has none; never
// two. Without a display (no DISPLAY, WAYLAND_DISPLAY or QT_QPA_PLATFORM) it
// runs on the offscreen platform rather than abort the process. Raises 5 when
// the host made a QCoreApplication, on which no window can exist.
QApplication& EnsureApplication();

// Lets pending window messages run; nothing before an application exists.
void ProcessPendingEvents();

}  // namespace seluvorne::ui
