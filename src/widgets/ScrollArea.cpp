#include "widgets/ScrollArea.h"

#include <algorithm>
#include <cmath>

#include "widgets/ThinScrollBar.h"

namespace quillmark {

void makeBare(QAbstractScrollArea& area) {
  area.setFrameShape(QFrame::NoFrame);
  area.setVerticalScrollBar(new ThinScrollBar);
  area.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  area.viewport()->setAutoFillBackground(false);
}

ScrollArea::ScrollArea(QWidget* parent) : QAbstractScrollArea(parent) {
  makeBare(*this);
  setFocusPolicy(Qt::StrongFocus);
}

void ScrollArea::setContentHeight(double height) {
  auto& bar = *verticalScrollBar();
  const int page = viewport()->height();
  bar.setPageStep(page);
  bar.setSingleStep(20);
  bar.setRange(0, std::max(0, int(std::ceil(height)) - page));
}

double ScrollArea::scrolled() const { return verticalScrollBar()->value(); }

void ScrollArea::scrollContentsBy(int, int dy) { viewport()->scroll(0, dy); }

}  // namespace quillmark
