#include "ui/application.h"

#include <QApplication>
#include <cstdlib>

#include "seluvorne/error.h"

namespace seluvorne::ui {

namespace {

bool HasDisplay() {
  for (const char* variable : {"QT_QPA_PLATFORM", "DISPLAY", "WAYLAND_DISPLAY"}) {
    const char* value = std::getenv(variable);
    if (value && *value) return true;
  }
  return false;
}

QApplication* CreateApplication() {
  // QApplication keeps references to argc and argv for its whole life.
  static char program[] = "seluvorne";
  static char platform_option[] = "-platform";
  static char offscreen[] = "offscreen";
  static char* argv[] = {program, platform_option, offscreen, nullptr};
  static int argc = HasDisplay() ? 1 : 3;
  // Never destroyed: windows may outlive main, and Qt tears down its own
  // state at exit.
  return new QApplication(argc, argv);
}

}  // namespace

QApplication& EnsureApplication() {
  if (QCoreApplication* existing = QCoreApplication::instance()) {
    if (auto* application = qobject_cast<QApplication*>(existing)) return *application;
    Raise(errc::kInvalidCall, "(the host's QCoreApplication cannot show windows)");
  }
  return *CreateApplication();
}

void ProcessPendingEvents() {
  if (QCoreApplication::instance()) QCoreApplication::processEvents();
}

}  // namespace seluvorne::ui
