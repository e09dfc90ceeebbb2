#pragma once

#include "widgets/PulsingView.h"

namespace quillmark {

/// "Loading...", while there is nothing else to show.
class LoadingText : public PulsingView {
 public:
  explicit LoadingText(QWidget* parent = nullptr);

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace quillmark
