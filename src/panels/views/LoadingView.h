#pragma once

#include <QWidget>

#include "widgets/Pulse.h"

namespace quillmark {

/// The small brain that pulses while an answer is awaited. Moves only while it is visible.
class LoadingView : public QWidget {
 public:
  static constexpr int side = 20;
  static constexpr int cornerRadius = 6;

  explicit LoadingView(QWidget* parent = nullptr, int length = side);

  bool pulsing() const { return pulse_.running(); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  double opacity_ = 0.5;
  Pulse pulse_;
};

}  // namespace quillmark
