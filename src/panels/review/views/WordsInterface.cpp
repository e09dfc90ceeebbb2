#include "panels/review/views/WordsInterface.h"

#include "panels/review/views/DiffViews.h"

namespace quillmark {

namespace {

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
  QAccessible::Role role() const override { return QAccessible::ListItem; }
  void setText(QAccessible::Text, const QString&) override {}

  QAccessible::State state() const override {
    QAccessible::State state;
    state.readOnly = true;
    state.invalid = !isValid();
    return state;
  }

  QString text(QAccessible::Text kind) const override {
    if (kind != QAccessible::Name || !isValid()) {
      return {};
    }
    const QString text = word().text.trimmed();
    const QString help = WordLevelDiffView::help(*word().element).trimmed();
    if (word().element->type == DiffType::modified) {
      return QStringLiteral("%1 (%2)").arg(text, help);
    }
    return help.isEmpty() ? text : help;
  }

  QRect rect() const override {
    if (!isValid()) {
      return {};
    }
    const QRect box = word().box.translated(view_.origin()).toAlignedRect();
    return {view_.viewport()->mapToGlobal(box.topLeft()), box.size()};
  }

 private:
  const WordLevelDiffView::Word& word() const { return view_.words()[std::size_t(index_)]; }

  WordLevelDiffView& view_;
  int index_;
};

}  // namespace

WordsInterface::WordsInterface(WordLevelDiffView& view) : QAccessibleWidget(&view, QAccessible::List), view_(view) {}

WordsInterface::~WordsInterface() {
  for (const auto id : ids_) {
    QAccessible::deleteAccessibleInterface(id);
  }
}

int WordsInterface::childCount() const { return int(view_.words().size()); }

QAccessibleInterface* WordsInterface::child(int index) const {
  if (index < 0 || index >= childCount()) {
    return nullptr;
  }
  while (int(ids_.size()) <= index) {
    ids_.push_back(QAccessible::registerAccessibleInterface(new WordInterface(view_, int(ids_.size()))));
  }
  return QAccessible::accessibleInterface(ids_[std::size_t(index)]);
}

int WordsInterface::indexOfChild(const QAccessibleInterface* wanted) const {
  for (std::size_t i = 0; i < ids_.size(); ++i) {
    if (QAccessible::accessibleInterface(ids_[i]) == wanted) {
      return int(i);
    }
  }
  return -1;
}

}  // namespace quillmark
