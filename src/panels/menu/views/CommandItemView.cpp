#include "panels/menu/views/CommandItemView.h"

#include <QPainter>

#include "widgets/Look.h"
#include "widgets/Symbols.h"

namespace quillmark {

namespace {

constexpr int iconSide = 20;
constexpr int padding = 10;
constexpr int gap = 10;

}  // namespace

QSize CommandItemView::sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const { return {0, height}; }

void CommandItemView::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
  const bool isSelected = index.data(selected).toBool();
  const bool isLit = isSelected || index.data(hovered).toBool();
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  if (isLit) {
    painter->setPen(Qt::NoPen);
    painter->setBrush(option.palette.color(QPalette::Highlight));
    painter->drawRoundedRect(option.rect, look::chipRadius, look::chipRadius);
  }
  const QColor ink = option.palette.color(isLit ? QPalette::HighlightedText : QPalette::WindowText);
  const auto mirrored = [&](const QRect& box) { return QStyle::visualRect(option.direction, option.rect, box); };
  QRect inside = option.rect.adjusted(padding, 0, -padding, 0);
  const QRect icon(inside.left(), inside.center().y() - iconSide / 2 + 1, iconSide, iconSide);
  painter->drawPixmap(mirrored(icon), symbols::pixmap(index.data(symbol).toString().toStdString(), iconSide,
                                                      painter->device()->devicePixelRatioF(), ink));
  inside.setLeft(icon.right() + 1 + gap);
  painter->setPen(ink);
  painter->setFont(option.font);
  if (isSelected) {
    const QString hint = QStringLiteral("⏎");
    const int width = option.fontMetrics.horizontalAdvance(hint);
    painter->drawText(mirrored(QRect(inside.right() - width, inside.top(), width + 1, inside.height())),
                      Qt::AlignVCenter, hint);
    inside.setRight(inside.right() - width - gap);
  }
  painter->drawText(mirrored(inside), look::leading(option.direction),
                    option.fontMetrics.elidedText(index.data().toString(), Qt::ElideRight, inside.width()));
  painter->restore();
}

}  // namespace quillmark
