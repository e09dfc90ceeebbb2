#pragma once

#include <QAccessible>

class QWidget;

namespace quillmark {

/// A widget with an accessible interface of its own. Inherit it in addition to the widget class.
class AccessibleView {
 public:
  AccessibleView() = default;
  AccessibleView(const AccessibleView&) = delete;
  AccessibleView& operator=(const AccessibleView&) = delete;
  virtual ~AccessibleView() = default;

  /// The caller takes ownership.
  virtual QAccessibleInterface* makeAccessible() = 0;
};

/// Installs the accessible interfaces of our own views. Call once, before any view is created.
void installAccessibility();

/// The role of a widget that paints itself or contains others; without one assistive technology skips it, whatever its
/// name.
void setRole(QWidget& widget, QAccessible::Role role);

}  // namespace quillmark
