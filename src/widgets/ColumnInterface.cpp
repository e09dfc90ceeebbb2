#include "widgets/ColumnInterface.h"

#include <QScrollBar>

#include "widgets/TextColumn.h"

namespace quillmark {

ColumnInterface::ColumnInterface(TextColumn& column)
    : QAccessibleWidget(&column, QAccessible::EditableText), column_(column) {}

void* ColumnInterface::interface_cast(QAccessible::InterfaceType type) {
  return type == QAccessible::TextInterface ? static_cast<QAccessibleTextInterface*>(this)
                                            : QAccessibleWidget::interface_cast(type);
}

QAccessible::State ColumnInterface::state() const {
  auto state = QAccessibleWidget::state();
  state.readOnly = true;
  state.multiLine = true;
  state.selectableText = true;
  return state;
}

QString ColumnInterface::text(QAccessible::Text kind) const {
  return kind == QAccessible::Value ? column_.allText() : QAccessibleWidget::text(kind);
}

QString ColumnInterface::text(int start, int end) const { return column_.allText().mid(start, end - start); }

int ColumnInterface::characterCount() const { return int(column_.allText().size()); }

QRect ColumnInterface::characterRect(int offset) const {
  const QRect box = column_.rectOfCharacter(offset).toAlignedRect();
  return {column_.viewport()->mapToGlobal(box.topLeft()), box.size()};
}

int ColumnInterface::offsetAtPoint(const QPoint& point) const {
  return column_.offsetAt(column_.viewport()->mapFromGlobal(point));
}

void ColumnInterface::scrollToSubstring(int start, int) {
  auto* const bar = column_.verticalScrollBar();
  bar->setValue(bar->value() + int(column_.rectOfCharacter(start).top()));
}

QString ColumnInterface::attributes(int, int* start, int* end) const {
  *start = 0;
  *end = characterCount();
  return {};
}

}  // namespace quillmark
