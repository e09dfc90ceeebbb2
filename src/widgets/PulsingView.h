#pragma once

#include <QWidget>

#include "widgets/Pulse.h"

namespace quillmark {

/// A view that pulses while it is visible. The subclass paints it with the current opacity.
class PulsingView : public QWidget {
 public:
  /// See Pulse.
  PulsingView(double from, double to, int halfPeriod, QWidget* parent);

  bool pulsing() const { return pulse_.running(); }

 protected:
  double opacity() const { return opacity_; }
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  double opacity_;
  Pulse pulse_;
};

}  // namespace quillmark
