#include "widgets/List.h"

#include <QPainter>

#include "widgets/Look.h"
#include "widgets/ScrollArea.h"
#include "widgets/Symbols.h"

namespace quillmark {

namespace {

constexpr int padding = 10;

}  // namespace

void styleList(QListView& list) {
  makeBare(list);
  list.setFont(look::font(13));
  list.setUniformItemSizes(true);
  list.setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
  list.setEditTriggers(QAbstractItemView::NoEditTriggers);
  list.viewport()->setMouseTracking(true);
}

void RowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
  const RowStyle style = styleOf(option, index);
  painter->save();
  if (style.isLit) {
    look::fillRounded(*painter, option.rect, look::chipRadius, option.palette.color(QPalette::Highlight));
  }
  const QColor ink = style.isLit     ? option.palette.color(QPalette::HighlightedText)
                     : style.isFaint ? look::secondary(option.palette)
                                     : option.palette.color(QPalette::WindowText);
  const auto mirrored = [&](const QRect& box) { return QStyle::visualRect(option.direction, option.rect, box); };
  QRect inside = option.rect.adjusted(padding, 0, -padding, 0);
  const int side = style.symbolSide;
  if (!style.symbol.empty()) {
    const QRect symbol(inside.left(), option.rect.top() + (option.rect.height() - side) / 2, side, side);
    symbols::draw(*painter, mirrored(symbol).topLeft(), side, style.symbol, ink);
  }
  inside.setLeft(inside.left() + side + style.gap);
  painter->setPen(ink);
  painter->setFont(option.font);
  if (!style.trailing.isEmpty()) {
    const int width = option.fontMetrics.horizontalAdvance(style.trailing);
    const QRect place(inside.right() - width, inside.top(), width + 1, inside.height());
    painter->drawText(mirrored(place), Qt::AlignVCenter, style.trailing);
    inside.setRight(place.left() - style.gap);
  }
  painter->drawText(mirrored(inside), look::leading(option.direction),
                    option.fontMetrics.elidedText(index.data().toString(), style.elision, inside.width()));
  painter->restore();
}

}  // namespace quillmark
