#pragma once

#include <QAccessibleWidget>
#include <vector>

#include "panels/review/views/DiffViews.h"

namespace quillmark {

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

}  // namespace quillmark
