#include "panels/views/LoadingView.h"

#include <QPainter>
#include <QStyle>
#include <cmath>

#include "panels/views/Symbols.h"

namespace quillmark {

namespace {

constexpr double faintest = 0.5;
constexpr int halfPulse = 400;  // ms

bool isDark(const QPalette& palette) {
  return palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
}

}  // namespace

LoadingView::LoadingView(QWidget* parent) : QWidget(parent) {
  setFixedSize(side, side);
  setAccessibleName(QStringLiteral("Quillmark"));

  QEasingCurve easeInOut(QEasingCurve::BezierSpline);
  easeInOut.addCubicBezierSegment({0.42, 0}, {0.58, 1}, {1, 1});
  // There in the first half of a round, back in the second.
  pulse_.setStartValue(0.0);
  pulse_.setEndValue(2.0);
  pulse_.setDuration(2 * halfPulse);
  pulse_.setLoopCount(-1);
  QObject::connect(&pulse_, &QVariantAnimation::valueChanged, this, [this, easeInOut](const QVariant& value) {
    const double there = 1 - std::abs(1 - value.toDouble());
    opacity_ = faintest + (1 - faintest) * easeInOut.valueForProgress(there);
    update();
  });
}

void LoadingView::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  // Styles answer with no duration where the desktop asks for less motion.
  if (style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, this) > 0) {
    pulse_.start();
  } else {
    opacity_ = 1;
  }
}

void LoadingView::hideEvent(QHideEvent* event) {
  pulse_.stop();
  QWidget::hideEvent(event);
}

void LoadingView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setOpacity(opacity_);
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor::fromRgbF(0, 0, 0, 0.33F));
  painter.drawRoundedRect(rect(), cornerRadius, cornerRadius);
  const QColor colour = palette().color(isDark(palette()) ? QPalette::Highlight : QPalette::WindowText);
  painter.drawPixmap(rect(), symbols::pixmap("brain", side, devicePixelRatioF(), colour));
}

}  // namespace quillmark
