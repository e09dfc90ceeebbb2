#pragma once

#include <QAccessibleWidget>
#include <vector>

namespace quillmark {

class WordLevelDiffView;

/// What assistive technology is told about a comparison by words: a list of them, each with what happened to it.
class WordsInterface : public QAccessibleWidget {
 public:
  explicit WordsInterface(WordLevelDiffView& view);
  ~WordsInterface() override;

  int childCount() const override;
  QAccessibleInterface* child(int index) const override;
  int indexOfChild(const QAccessibleInterface* wanted) const override;

 private:
  WordLevelDiffView& view_;
  mutable std::vector<QAccessible::Id> ids_;  ///< created on demand
};

}  // namespace quillmark
