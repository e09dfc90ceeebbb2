#pragma once

#include <QAbstractScrollArea>

namespace quillmark {

/// Leaves of a scroll area only its content and a thin scroll bar.
void makeBare(QAbstractScrollArea& area);

/// Content that its heir draws into the viewport, and that scrolls up and down.
class ScrollArea : public QAbstractScrollArea {
 public:
  explicit ScrollArea(QWidget* parent = nullptr);

 protected:
  void setContentHeight(double height);
  /// How far the content's top is above that of the viewport.
  double scrolled() const;
  void scrollContentsBy(int dx, int dy) override;
};

}  // namespace quillmark
