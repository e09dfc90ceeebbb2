#include "widgets/Pulse.h"

#include <cmath>

#include "widgets/Look.h"

namespace quillmark {

Pulse::Pulse(double from, double to, int halfPeriod, std::function<void(double)> step) : step_(std::move(step)) {
  QEasingCurve easeInOut(QEasingCurve::BezierSpline);
  easeInOut.addCubicBezierSegment({0.42, 0}, {0.58, 1}, {1, 1});
  // One way in the first half of a period, back in the second.
  animation_.setStartValue(0.0);
  animation_.setEndValue(2.0);
  animation_.setDuration(2 * halfPeriod);
  animation_.setLoopCount(-1);
  QObject::connect(&animation_, &QVariantAnimation::valueChanged, &animation_,
                   [this, from, to, easeInOut](const QVariant& value) {
                     constexpr double visible = 0.02;
                     const double there = 1 - std::abs(1 - value.toDouble());
                     const double opacity = from + (to - from) * easeInOut.valueForProgress(there);
                     if (std::abs(opacity - last_) >= visible) {
                       last_ = opacity;
                       step_(opacity);
                     }
                   });
}

void Pulse::start(const QWidget& widget) {
  if (look::animates(widget)) {
    animation_.start();
  } else {
    step_(1);
  }
}

void Pulse::stop() {
  animation_.stop();
  step_(1);
}

}  // namespace quillmark
