// Windows and controls as late-bound objects.
//
// The suite's services receive forms by reference and ask them for their
// geometry, as the suite's platform gave it: in twips, the outer frame for a
// window. WidgetMembers holds what every window and control answers; a form
// with members of its own derives from DispatchImpl<itself, WidgetMembers>
// and starts its member table with WidgetMemberTable. The object refers to
// its widget weakly: once the window is unloaded every member raises 91.
//
//   Left, Top, Width, Height   32-bit twips, get and put
//   ScaleWidth, ScaleHeight    32-bit twips of the inside, get
//   Visible, Enabled           boolean, get and put
//   Caption                    text: a window's title, a label's or button's text
//   Name                       the object name ("frmKakunin", "lblKakunin"), get
//   WindowState                16-bit 0 normal, 1 minimised, 2 maximised, get and put
//   Move(Left[, Top[, Width[, Height]]])
#pragma once

#include <QPointer>
#include <QWidget>
#include <cstdint>
#include <optional>
#include <string>

#include "seluvorne/member_table.h"

namespace seluvorne::ui {

class WidgetMembers : public Dispatch {
 public:
  explicit WidgetMembers(QWidget* widget) : widget_(widget) {}

  std::int32_t GetLeft() const;
  void LetLeft(std::int32_t twips);
  std::int32_t GetTop() const;
  void LetTop(std::int32_t twips);
  std::int32_t GetWidth() const;
  void LetWidth(std::int32_t twips);
  std::int32_t GetHeight() const;
  void LetHeight(std::int32_t twips);
  std::int32_t GetScaleWidth() const;
  std::int32_t GetScaleHeight() const;
  bool GetVisible() const;
  void LetVisible(bool visible);
  bool GetEnabled() const;
  void LetEnabled(bool enabled);
  std::string GetCaption() const;
  void LetCaption(std::string caption);
  std::string GetName() const;
  std::int16_t GetWindowState() const;
  void LetWindowState(std::int16_t state);
  void Move(std::int32_t left, std::optional<std::int32_t> top, std::optional<std::int32_t> width,
            std::optional<std::int32_t> height);

 protected:
  // The widget; 91 once it is gone.
  QWidget& widget() const;

 private:
  QPointer<QWidget> widget_;
};

namespace detail {
// A member function of WidgetMembers as one of `Derived`, for its member table.
template <class Derived, class R, class... A>
R (Derived::*AsMemberOf(R (WidgetMembers::*function)(A...) const))
(A...) const {
  return function;
}
template <class Derived, class R, class... A>
R (Derived::*AsMemberOf(R (WidgetMembers::*function)(A...)))
(A...) {
  return function;
}
}  // namespace detail

// The members of WidgetMembers, for a class deriving from it.
template <class Derived>
MemberTable<Derived> WidgetMemberTable(std::string class_name) {
  using W = WidgetMembers;
  using detail::AsMemberOf;
  return MemberTable<Derived>(std::move(class_name))
      .get("Left", AsMemberOf<Derived>(&W::GetLeft))
      .put("Left", AsMemberOf<Derived>(&W::LetLeft))
      .get("Top", AsMemberOf<Derived>(&W::GetTop))
      .put("Top", AsMemberOf<Derived>(&W::LetTop))
      .get("Width", AsMemberOf<Derived>(&W::GetWidth))
      .put("Width", AsMemberOf<Derived>(&W::LetWidth))
      .get("Height", AsMemberOf<Derived>(&W::GetHeight))
      .put("Height", AsMemberOf<Derived>(&W::LetHeight))
      .get("ScaleWidth", AsMemberOf<Derived>(&W::GetScaleWidth))
      .get("ScaleHeight", AsMemberOf<Derived>(&W::GetScaleHeight))
      .get("Visible", AsMemberOf<Derived>(&W::GetVisible))
      .put("Visible", AsMemberOf<Derived>(&W::LetVisible))
      .get("Enabled", AsMemberOf<Derived>(&W::GetEnabled))
      .put("Enabled", AsMemberOf<Derived>(&W::LetEnabled))
      .get("Caption", AsMemberOf<Derived>(&W::GetCaption))
      .put("Caption", AsMemberOf<Derived>(&W::LetCaption))
      .get("Name", AsMemberOf<Derived>(&W::GetName))
      .get("WindowState", AsMemberOf<Derived>(&W::GetWindowState))
      .put("WindowState", AsMemberOf<Derived>(&W::LetWindowState))
      .method("Move", AsMemberOf<Derived>(&W::Move));
}

// A control, or any widget with no members of its own.
class ControlObject : public DispatchImpl<ControlObject, WidgetMembers> {
 public:
  using DispatchImpl::DispatchImpl;
  static const MemberTable<ControlObject>& Members();
};

}  // namespace seluvorne::ui
