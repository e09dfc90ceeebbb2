#pragma once

#include <QAbstractScrollArea>

namespace quillmark {

/// Reduces a scroll area to its content and a thin scroll bar.
void makeBare(QAbstractScrollArea& area);

/// Content painted into the viewport by the subclass, with vertical scrolling.
class ScrollArea : public QAbstractScrollArea {
 public:
  explicit ScrollArea(QWidget* parent = nullptr);

 protected:
  void setContentHeight(double height);
  /// The distance of the content's top above the viewport's.
  double scrolled() const;
  void scrollContentsBy(int dx, int dy) override;
};

}  // namespace quillmark
