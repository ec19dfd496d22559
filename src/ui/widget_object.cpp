#include "ui/widget_object.h"

#include <QAbstractButton>
#include <QLabel>
#include <algorithm>
#include <cmath>

#include "seluvorne/display.h"

namespace seluvorne::ui {

namespace {

std::int32_t ToTwips(int pixels) {
  return pixels * kTwipsPerPixel;
}

int ToPixels(std::int32_t twips) {
  return static_cast<int>(std::lround(static_cast<double>(twips) / kTwipsPerPixel));
}

// What the window frame adds to the inside, in pixels (0 for controls and
// for windows the platform has not framed yet).
QSize FrameExtra(const QWidget& widget) {
  return widget.frameGeometry().size() - widget.size();
}

}  // namespace

QWidget& WidgetMembers::widget() const {
  if (!widget_) Raise(errc::kObjectNotSet, "(the window is unloaded)");
  return *widget_;
}

// pos() of a window is its frame's position, as the runtime's Left and Top.
std::int32_t WidgetMembers::GetLeft() const {
  return ToTwips(widget().pos().x());
}
void WidgetMembers::LetLeft(std::int32_t twips) {
  widget().move(ToPixels(twips), widget().y());
}
std::int32_t WidgetMembers::GetTop() const {
  return ToTwips(widget().pos().y());
}
void WidgetMembers::LetTop(std::int32_t twips) {
  widget().move(widget().x(), ToPixels(twips));
}

std::int32_t WidgetMembers::GetWidth() const {
  return ToTwips(widget().frameGeometry().width());
}
void WidgetMembers::LetWidth(std::int32_t twips) {
  QWidget& w = widget();
  w.resize(std::max(1, ToPixels(twips) - FrameExtra(w).width()), w.height());
}
std::int32_t WidgetMembers::GetHeight() const {
  return ToTwips(widget().frameGeometry().height());
}
void WidgetMembers::LetHeight(std::int32_t twips) {
  QWidget& w = widget();
  w.resize(w.width(), std::max(1, ToPixels(twips) - FrameExtra(w).height()));
}

std::int32_t WidgetMembers::GetScaleWidth() const {
  return ToTwips(widget().width());
}
std::int32_t WidgetMembers::GetScaleHeight() const {
  return ToTwips(widget().height());
}

// A control answers its own setting, whether or not its window shows.
bool WidgetMembers::GetVisible() const {
  const QWidget& w = widget();
  return w.isWindow() ? w.isVisible() : !w.isHidden();
}
void WidgetMembers::LetVisible(bool visible) {
  widget().setVisible(visible);
}

bool WidgetMembers::GetEnabled() const {
  return widget().isEnabled();
}
void WidgetMembers::LetEnabled(bool enabled) {
  widget().setEnabled(enabled);
}

std::string WidgetMembers::GetCaption() const {
  const QWidget& w = widget();
  if (const auto* label = qobject_cast<const QLabel*>(&w)) return label->text().toStdString();
  if (const auto* button = qobject_cast<const QAbstractButton*>(&w))
    return button->text().toStdString();
  return w.windowTitle().toStdString();
}
void WidgetMembers::LetCaption(std::string caption) {
  QWidget& w = widget();
  const QString text = QString::fromStdString(caption);
  if (auto* label = qobject_cast<QLabel*>(&w))
    label->setText(text);
  else if (auto* button = qobject_cast<QAbstractButton*>(&w))
    button->setText(text);
  else
    w.setWindowTitle(text);
}

std::string WidgetMembers::GetName() const {
  return widget().objectName().toStdString();
}

std::int16_t WidgetMembers::GetWindowState() const {
  const Qt::WindowStates state = widget().windowState();
  if (state & Qt::WindowMinimized) return 1;
  if (state & Qt::WindowMaximized) return 2;
  return 0;
}
void WidgetMembers::LetWindowState(std::int16_t state) {
  switch (state) {
    case 0:
      widget().setWindowState(Qt::WindowNoState);
      return;
    case 1:
      widget().setWindowState(Qt::WindowMinimized);
      return;
    case 2:
      widget().setWindowState(Qt::WindowMaximized);
      return;
  }
  Raise(errc::kInvalidCall, "(WindowState " + std::to_string(state) + ")");
}

void WidgetMembers::Move(std::int32_t left, std::optional<std::int32_t> top,
                         std::optional<std::int32_t> width, std::optional<std::int32_t> height) {
  LetLeft(left);
  if (top) LetTop(*top);
  if (width) LetWidth(*width);
  if (height) LetHeight(*height);
}

const MemberTable<ControlObject>& ControlObject::Members() {
  static const auto table = WidgetMemberTable<ControlObject>("Control");
  return table;
}

}  // namespace seluvorne::ui
