#pragma once

#include <QVariantAnimation>
#include <QWidget>

namespace quillmark {

/// The small brain that pulses while an answer is awaited. Moves only while it is visible.
class LoadingView : public QWidget {
 public:
  static constexpr int side = 20;
  static constexpr int cornerRadius = 6;

  explicit LoadingView(QWidget* parent = nullptr);

  bool pulsing() const { return pulse_.state() == QAbstractAnimation::Running; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  QVariantAnimation pulse_;
  double opacity_ = 0.5;
};

}  // namespace quillmark
