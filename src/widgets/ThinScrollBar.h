#pragma once

#include <QScrollBar>

namespace quillmark {

/// A scroll bar without a trough and arrows.
class ThinScrollBar : public QScrollBar {
 public:
  static constexpr int thickness = 10;

  explicit ThinScrollBar(QWidget* parent = nullptr);
  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace quillmark
