#include "panels/review/views/LoadingText.h"

#include <QPainter>

#include "base/Localization.h"
#include "panels/review/views/ReviewBlocks.h"
#include "widgets/Accessibility.h"
#include "widgets/Look.h"
#include "widgets/QtText.h"
#include "widgets/TextBlocks.h"

namespace quillmark {

LoadingText::LoadingText(QWidget* parent) : PulsingView(1, 0.6, 1200, parent) {
  setRole(*this, QAccessible::StaticText);
  setAccessibleName(qt(quillmark::tr("Loading...")));
}

void LoadingText::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setOpacity(opacity());
  painter.setFont(look::font(blocks::textSize));
  painter.setPen(look::secondary(palette()));
  painter.drawText(QRectF(rect()).adjusted(blocks::margin, 0, -blocks::margin, 0),
                   look::leading(layoutDirection(), Qt::AlignTop), accessibleName());
}

}  // namespace quillmark
