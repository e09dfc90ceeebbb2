#include "panels/views/Accessibility.h"

#include <QAccessibleWidget>
#include <QScrollBar>
#include <memory>
#include <vector>

#include "panels/views/DiffViews.h"
#include "panels/views/DropDown.h"
#include "panels/views/SegmentedControl.h"
#include "panels/views/TextColumn.h"

namespace quillmark {

namespace {

constexpr const char* roleProperty = "accessibleRole";

/// A widget of no special kind.
class PlainInterface : public QAccessibleWidget {
 public:
  using QAccessibleWidget::QAccessibleWidget;

  QAccessible::State state() const override {
    auto state = QAccessibleWidget::state();
    if (widget()->focusProxy() != nullptr) {
      state.focusable = state.focused = false;  // that one tells so itself
    }
    return state;
  }
};

/// A button, one of several of which one is chosen, or one that opens a list.
class ButtonInterface : public QAccessibleWidget {
 public:
  explicit ButtonInterface(PanelButton& button)
      : QAccessibleWidget(&button, roleOf(button)), button_(button), menu_(dynamic_cast<DropDown*>(&button)) {}

  QAccessible::State state() const override {
    auto state = QAccessibleWidget::state();
    state.checkable = button_.isCheckable();
    state.checked = button_.isChecked();
    state.pressed = button_.isDown();
    state.hasPopup = state.expandable = menu_ != nullptr;
    state.expanded = menu_ != nullptr && menu_->isOpen();
    return state;
  }
  // What lies on a button is a drawing.
  int childCount() const override { return 0; }
  QAccessibleInterface* child(int) const override { return nullptr; }
  int indexOfChild(const QAccessibleInterface*) const override { return -1; }

  QStringList actionNames() const override {
    return button_.isEnabled() ? QStringList(pressAction()) + QAccessibleWidget::actionNames() : QStringList();
  }
  void doAction(const QString& action) override {
    action == pressAction() ? button_.click() : QAccessibleWidget::doAction(action);
  }

 private:
  static QAccessible::Role roleOf(const PanelButton& button) {
    if (dynamic_cast<const DropDown*>(&button) != nullptr) {
      return QAccessible::ButtonMenu;
    }
    return dynamic_cast<SegmentedControl*>(button.parent()) != nullptr ? QAccessible::RadioButton : QAccessible::Button;
  }

  PanelButton& button_;
  DropDown* menu_;
};

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

/// One word of a comparison, with what happened to it.
class WordInterface : public QAccessibleInterface {
 public:
  WordInterface(WordLevelDiffView& view, int index) : view_(view), index_(index) {}

  bool isValid() const override { return index_ < int(view_.words().size()); }
  QObject* object() const override { return nullptr; }
  QWindow* window() const override { return view_.window()->windowHandle(); }
  QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(&view_); }
  QAccessibleInterface* child(int) const override { return nullptr; }
  QAccessibleInterface* childAt(int, int) const override { return nullptr; }
  int childCount() const override { return 0; }
  int indexOfChild(const QAccessibleInterface*) const override { return -1; }
  QString text(QAccessible::Text kind) const override {
    if (kind != QAccessible::Name || !isValid()) {
      return {};
    }
    const auto& word = view_.words()[std::size_t(index_)];
    const QString help = WordLevelDiffView::help(*word.element);
    if (word.element->type == DiffType::modified) {
      return word.text.trimmed() + QStringLiteral(" (") + help.trimmed() + QLatin1Char(')');
    }
    return help.isEmpty() ? word.text.trimmed() : help.trimmed();
  }
  void setText(QAccessible::Text, const QString&) override {}
  QRect rect() const override {
    if (!isValid()) {
      return {};
    }
    const QRect box = view_.words()[std::size_t(index_)].box.translated(view_.origin()).toAlignedRect();
    return {view_.viewport()->mapToGlobal(box.topLeft()), box.size()};
  }
  QAccessible::Role role() const override { return QAccessible::ListItem; }
  QAccessible::State state() const override {
    QAccessible::State state;
    state.readOnly = true;
    state.invalid = !isValid();
    return state;
  }

 private:
  WordLevelDiffView& view_;
  int index_;
};

/// A comparison by words as a list of them.
class WordsInterface : public QAccessibleWidget {
 public:
  explicit WordsInterface(WordLevelDiffView& view) : QAccessibleWidget(&view, QAccessible::List), view_(view) {}
  ~WordsInterface() override {
    for (const auto id : ids_) {
      QAccessible::deleteAccessibleInterface(id);
    }
  }

  int childCount() const override { return int(view_.words().size()); }
  QAccessibleInterface* child(int index) const override {
    if (index < 0 || index >= childCount()) {
      return nullptr;
    }
    while (int(ids_.size()) <= index) {
      ids_.push_back(QAccessible::registerAccessibleInterface(new WordInterface(view_, int(ids_.size()))));
    }
    return QAccessible::accessibleInterface(ids_[std::size_t(index)]);
  }
  int indexOfChild(const QAccessibleInterface* wanted) const override {
    for (std::size_t i = 0; i < ids_.size(); ++i) {
      if (QAccessible::accessibleInterface(ids_[i]) == wanted) {
        return int(i);
      }
    }
    return -1;
  }

 private:
  WordLevelDiffView& view_;
  mutable std::vector<QAccessible::Id> ids_;  ///< made when they are asked for
};

QAccessibleInterface* make(const QString& className, QObject* object) {
  if (auto* const column = dynamic_cast<TextColumn*>(object)) {
    return new ColumnInterface(*column);
  }
  if (auto* const words = dynamic_cast<WordLevelDiffView*>(object)) {
    return new WordsInterface(*words);
  }
  if (auto* const button = dynamic_cast<PanelButton*>(object)) {
    return new ButtonInterface(*button);
  }
  auto* const widget = dynamic_cast<QWidget*>(object);
  if (!widget) {
    return nullptr;
  }
  if (const QVariant role = widget->property(roleProperty); role.isValid()) {
    return new PlainInterface(widget, role.value<QAccessible::Role>());
  }
  if (className == QLatin1String("QWidget")) {
    return new PlainInterface(widget, widget->isWindow() ? QAccessible::Window : QAccessible::Client);
  }
  return nullptr;
}

}  // namespace

void installAccessibility() { QAccessible::installFactory(make); }

void setRole(QWidget& widget, QAccessible::Role role) { widget.setProperty(roleProperty, QVariant::fromValue(role)); }

}  // namespace quillmark
