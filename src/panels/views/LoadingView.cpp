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

LoadingView::LoadingView(QWidget* parent, int length)
    : QWidget(parent), pulse_(faintest, 1, halfPulse, [this](double opacity) {
        opacity_ = opacity;
        update();
      }) {
  setFixedSize(length, length);
  setRole(*this, QAccessible::Animation);
  setAccessibleName(QStringLiteral("Quillmark"));
}

void LoadingView::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  pulse_.start(*this);
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
  painter.drawRoundedRect(rect(), cornerRadius * width() / double(LoadingView::side),
                          cornerRadius * width() / double(LoadingView::side));
  const QColor colour =
      palette().color(look::scheme(palette()) == look::Scheme::dark ? QPalette::Highlight : QPalette::WindowText);
  painter.drawPixmap(rect(), symbols::pixmap("brain", width(), devicePixelRatioF(), colour));
}

}  // namespace quillmark
