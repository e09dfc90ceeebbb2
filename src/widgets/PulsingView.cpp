#include "widgets/PulsingView.h"

namespace quillmark {

PulsingView::PulsingView(double from, double to, int halfPeriod, QWidget* parent)
    : QWidget(parent), opacity_(from), pulse_(from, to, halfPeriod, [this](double opacity) {
        opacity_ = opacity;
        update();
      }) {}

void PulsingView::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  pulse_.start(*this);
}

void PulsingView::hideEvent(QHideEvent* event) {
  pulse_.stop();
  QWidget::hideEvent(event);
}

}  // namespace quillmark
