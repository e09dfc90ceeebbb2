#pragma once

#include <QPushButton>
#include <string>

#include "widgets/Accessibility.h"

namespace quillmark {

/// A flat button with a symbol, a title or both. Space presses it; Return is left to its window.
class Button : public QPushButton, public AccessibleView {
 public:
  enum class Look {
    plain,    ///< a background only under the pointer
    filled,   ///< the window's main action, in the accent colour
    segment,  ///< one of several in a row
    raised,   ///< the chosen one of several in a row
  };

  /// Space around a button's body for the focus ring; segments have theirs inside.
  static constexpr int ringRoom = 4;

  explicit Button(Look look = Look::plain, QWidget* parent = nullptr);

  /// `help` is the tooltip, and the accessible name of a button without a title.
  void describe(const QString& title, const std::string& symbol, const QString& help);
  void setLook(Look look);
  /// Drawn after the title.
  void setTrailingSymbol(const std::string& symbol);
  /// The colour of symbol and title where the button is neither filled nor disabled.
  void setTint(QPalette::ColorRole role);

  QAccessibleInterface* makeAccessible() override;
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  bool isSegment() const { return look_ == Look::segment || look_ == Look::raised; }
  QRect body() const;

  Look look_;
  std::string symbol_;
  std::string trailing_;
  QPalette::ColorRole tint_ = QPalette::WindowText;
};

}  // namespace quillmark
