#pragma once

#include <QAccessible>

class QWidget;

namespace quillmark {

/// Makes the views of the panels known to assistive technology, which the toolkit can't do for what it does not know.
/// Call once, before the views are made.
void installAccessibility();

/// What assistive technology takes a widget for that draws itself or holds others; without it such a widget is passed
/// over, whatever its name says.
void setRole(QWidget& widget, QAccessible::Role role);

}  // namespace quillmark
