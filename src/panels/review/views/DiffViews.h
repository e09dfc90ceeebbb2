#pragma once

#include <vector>

#include "base/Signal.h"
#include "panels/review/BackgroundComparison.h"
#include "panels/review/TextComparison.h"
#include "widgets/ScrollArea.h"
#include "widgets/TextColumn.h"

namespace quillmark {

/// The comparison by lines; a message while it is being calculated.
class LineByLineDiffView : public TextColumn {
 public:
  explicit LineByLineDiffView(const BackgroundComparison<LineDiff>& comparison, QWidget* parent = nullptr);

 private:
  void fill();

  const BackgroundComparison<LineDiff>& comparison_;
  Connection changes_;
};

/// The comparison by words, in rows wrapped at the panel's width; a message while it is being calculated.
class WordLevelDiffView : public ScrollArea, public AccessibleView {
 public:
  explicit WordLevelDiffView(const BackgroundComparison<DiffElement>& comparison, QWidget* parent = nullptr);

  QAccessibleInterface* makeAccessible() override;

  /// An element with its place, in points from the top of all rows.
  struct Word {
    const DiffElement* element = nullptr;
    QString text;
    QRectF box;
  };
  const std::vector<Word>& words() const { return words_; }
  /// The change of the word as text; empty for an unchanged one.
  static QString help(const DiffElement& element);
  /// From the coordinates of `words()` to those of the viewport.
  QPointF origin() const;

 protected:
  bool viewportEvent(QEvent* event) override;
  void changeEvent(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void fill();
  void layOut();

  const BackgroundComparison<DiffElement>& comparison_;
  std::vector<std::vector<DiffElement>> lines_;
  std::vector<Word> words_;  ///< from top to bottom
  Connection changes_;
};

}  // namespace quillmark
