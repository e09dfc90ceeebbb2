#include "widgets/Placeholder.h"

#include <QPainter>

#include "widgets/Accessibility.h"
#include "widgets/Look.h"
#include "widgets/Symbols.h"

namespace quillmark {

Placeholder::Placeholder(const QString& text, std::string symbol, QWidget* parent)
    : QWidget(parent), symbol_(std::move(symbol)) {
  setRole(*this, QAccessible::StaticText);
  setAccessibleName(text);
}

void Placeholder::paintEvent(QPaintEvent*) {
  constexpr int side = 40;
  constexpr int gap = 12;
  constexpr int margin = 16;
  QPainter painter(this);
  painter.setFont(symbol_.empty() ? look::font(15, QFont::Medium) : look::font(13));
  const QColor colour = look::secondary(palette());
  const int head = symbol_.empty() ? 0 : side + gap;
  const QRect room = rect().adjusted(margin, 0, -margin, 0);
  const int textHeight = painter.fontMetrics().boundingRect(room, Qt::TextWordWrap, accessibleName()).height();
  const int top = (height() - head - textHeight) / 2;
  if (!symbol_.empty()) {
    symbols::draw(painter, QPointF((width() - side) / 2, top), side, symbol_, colour);
  }
  painter.setPen(colour);
  painter.drawText(QRect(room.left(), top + head, room.width(), textHeight), Qt::AlignHCenter | Qt::TextWordWrap,
                   accessibleName());
}

}  // namespace quillmark
