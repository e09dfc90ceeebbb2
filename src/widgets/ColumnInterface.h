#pragma once

#include <QAccessibleWidget>

namespace quillmark {

class TextColumn;

/// What assistive technology is told about a column of paragraphs: that it is one read-only text.
class ColumnInterface : public QAccessibleWidget, public QAccessibleTextInterface {
 public:
  explicit ColumnInterface(TextColumn& column);

  void* interface_cast(QAccessible::InterfaceType type) override;
  QAccessible::State state() const override;
  // The scroll area's internal children are hidden.
  int childCount() const override { return 0; }
  QAccessibleInterface* child(int) const override { return nullptr; }
  int indexOfChild(const QAccessibleInterface*) const override { return -1; }
  QString text(QAccessible::Text kind) const override;

  QString text(int start, int end) const override;
  int characterCount() const override;
  QRect characterRect(int offset) const override;
  int offsetAtPoint(const QPoint& point) const override;
  void scrollToSubstring(int start, int end) override;
  QString attributes(int offset, int* start, int* end) const override;

  // There is no caret, and the selection is only made by the pointer.
  int cursorPosition() const override { return 0; }
  void setCursorPosition(int) override {}
  int selectionCount() const override { return 0; }
  void selection(int, int* start, int* end) const override { *start = *end = 0; }
  void addSelection(int, int) override {}
  void removeSelection(int) override {}
  void setSelection(int, int, int) override {}

 private:
  TextColumn& column_;
};

}  // namespace quillmark
