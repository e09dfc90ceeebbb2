#pragma once

#include <QAccessibleWidget>
#include <QScrollBar>

#include "widgets/TextColumn.h"

namespace quillmark {

/// A column of paragraphs as one read-only text.
class ColumnInterface : public QAccessibleWidget, public QAccessibleTextInterface {
 public:
  explicit ColumnInterface(TextColumn& column)
      : QAccessibleWidget(&column, QAccessible::EditableText), column_(column) {}

  void* interface_cast(QAccessible::InterfaceType type) override {
    return type == QAccessible::TextInterface ? static_cast<QAccessibleTextInterface*>(this)
                                              : QAccessibleWidget::interface_cast(type);
  }
  QAccessible::State state() const override {
    auto state = QAccessibleWidget::state();
    state.readOnly = true;
    state.multiLine = true;
    state.selectableText = true;
    return state;
  }
  // The parts of the scroll area are of no interest.
  int childCount() const override { return 0; }
  QAccessibleInterface* child(int) const override { return nullptr; }
  int indexOfChild(const QAccessibleInterface*) const override { return -1; }
  QString text(QAccessible::Text kind) const override {
    return kind == QAccessible::Value ? column_.allText() : QAccessibleWidget::text(kind);
  }

  QString text(int start, int end) const override { return column_.allText().mid(start, end - start); }
  int characterCount() const override { return int(column_.allText().size()); }
  QRect characterRect(int offset) const override {
    const QRect box = column_.rectOfCharacter(offset).toAlignedRect();
    return {column_.viewport()->mapToGlobal(box.topLeft()), box.size()};
  }
  int offsetAtPoint(const QPoint& point) const override {
    return column_.offsetAt(column_.viewport()->mapFromGlobal(point));
  }
  void scrollToSubstring(int start, int) override {
    auto* const bar = column_.verticalScrollBar();
    bar->setValue(bar->value() + int(column_.rectOfCharacter(start).top()));
  }
  // There is no caret; what is selected is known to the user by the pointer.
  int cursorPosition() const override { return 0; }
  void setCursorPosition(int) override {}
  int selectionCount() const override { return 0; }
  void selection(int, int* start, int* end) const override { *start = *end = 0; }
  void addSelection(int, int) override {}
  void removeSelection(int) override {}
  void setSelection(int, int, int) override {}
  QString attributes(int, int* start, int* end) const override {
    *start = 0;
    *end = characterCount();
    return {};
  }

 private:
  TextColumn& column_;
};

}  // namespace quillmark
