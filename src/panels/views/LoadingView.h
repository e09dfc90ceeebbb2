#pragma once

#include "widgets/PulsingView.h"

namespace quillmark {

/// The small brain that pulses while an answer is awaited.
class LoadingView : public PulsingView {
 public:
  static constexpr int side = 20;
  static constexpr int cornerRadius = 6;

  explicit LoadingView(QWidget* parent = nullptr, int length = side);

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace quillmark
