#include "panels/views/LoadingView.h"

#include <QPainter>

#include "widgets/Accessibility.h"
#include "widgets/Look.h"
#include "widgets/Symbols.h"

namespace quillmark {

namespace {

constexpr double faintest = 0.5;
constexpr int halfPulse = 400;  // ms

}  // namespace

LoadingView::LoadingView(QWidget* parent, int length) : PulsingView(faintest, 1, halfPulse, parent) {
  setFixedSize(length, length);
  setRole(*this, QAccessible::Animation);
  setAccessibleName(QStringLiteral("Quillmark"));
}

void LoadingView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setOpacity(opacity());
  look::fillRounded(painter, rect(), cornerRadius * width() / double(side), QColor::fromRgbF(0, 0, 0, 0.33F));
  const QColor colour =
      palette().color(look::scheme(palette()) == look::Scheme::dark ? QPalette::Highlight : QPalette::WindowText);
  symbols::draw(painter, QPointF(), width(), "brain", colour);
}

}  // namespace quillmark
