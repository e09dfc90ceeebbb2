#pragma once

#include <QEasingCurve>
#include <QVariantAnimation>
#include <functional>

namespace quillmark {

/// An opacity that alternates between two values while it runs. Updates no more often than the eye can see.
class Pulse {
 public:
  /// `halfPeriod` in milliseconds.
  Pulse(double from, double to, int halfPeriod, std::function<void(double)> step);

  /// Where the desktop asks for less motion, the opacity stays at the higher of the two.
  void start(const QWidget& widget);
  /// Leaves the opacity at 1.
  void stop();
  bool running() const { return animation_.state() == QAbstractAnimation::Running; }

 private:
  QVariantAnimation animation_;
  std::function<void(double)> step_;
  double last_ = 0;
};

}  // namespace quillmark
