#include <QGuiApplication>
#include <QScreen>

#include "seluvorne/display.h"

namespace seluvorne {

namespace {

QScreen* PrimaryScreen() {
  if (!qobject_cast<QGuiApplication*>(QCoreApplication::instance())) return nullptr;
  return QGuiApplication::primaryScreen();
}

ScreenRect RectOf(const QRect& rect) {
  return ScreenRect{rect.x(), rect.y(), rect.width(), rect.height()};
}

}  // namespace

std::optional<ScreenRect> PrimaryScreenBounds() {
  if (QScreen* screen = PrimaryScreen()) return RectOf(screen->geometry());
  return std::nullopt;
}

std::optional<ScreenRect> PrimaryScreenWorkArea() {
  if (QScreen* screen = PrimaryScreen()) return RectOf(screen->availableGeometry());
  return std::nullopt;
}

}  // namespace seluvorne
