#pragma once

#include <QAccessible>

class QWidget;

namespace quillmark {

/// A widget that assistive technology knows by an interface of its own. Inherit it beside the widget.
class AccessibleView {
 public:
  AccessibleView() = default;
  AccessibleView(const AccessibleView&) = delete;
  AccessibleView& operator=(const AccessibleView&) = delete;
  virtual ~AccessibleView() = default;

  /// The caller owns what it gets.
  virtual QAccessibleInterface* makeAccessible() = 0;
};

/// Makes our views known to assistive technology, which the toolkit can't do for what it does not know.
/// Call once, before the views are made.
void installAccessibility();

/// What assistive technology takes a widget for that draws itself or holds others; without it such a widget is passed
/// over, whatever its name says.
void setRole(QWidget& widget, QAccessible::Role role);

}  // namespace quillmark
