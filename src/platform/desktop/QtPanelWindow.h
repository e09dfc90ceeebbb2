#pragma once

#include <QWidget>

#include "platform/PanelWindow.h"
#include "platform/desktop/WindowHints.h"

namespace quillmark {

/// The frameless window behind a floating panel; its content is a child widget. Where a compositor runs its corners are
/// rounded, and a panel throws a soft shadow; where none does it is opaque, with a hairline around a panel.
class QtPanelWindow : public QWidget, public PanelWindow {
 public:
  enum class Kind {
    indicator,  ///< never takes the keyboard, lets clicks through
    panel,      ///< takes the keyboard when asked to, can be dragged by its background
  };

  QtPanelWindow(WindowHints& hints, Kind kind, int cornerRadius);

  /// The widget that fills a panel inside its shadow; it becomes a child of the window and gives it its title.
  void setContent(QWidget& content);
  /// Lets the user drag the edges of a panel.
  void setResizable(bool resizable) { resizable_ = resizable; }

  void moveTopLeft(Point corner) override;
  void orderFront() override;
  void close() override;
  /// See WindowHints::markAsPanel for how the application in front stays what it is.
  void makeKeyAndOrderFront() override;
  Size contentSize() const override;
  void setContentSize(Size size) override;

  /// Whether it is shown and has the keyboard, or has been given it a moment ago.
  bool hasKeyboard() const { return isVisible() && wantsKeyboard_; }

  /// Whether what is drawn half transparent shows what is behind the window. Settled anew before each show.
  bool translucent() const { return translucent_; }

 protected:
  /// The ground under everything.
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void moveEvent(QMoveEvent* event) override;

 private:
  void prepare();
  void activeWindowIs(WId window);
  void shapeIndicator();
  QRect contentRect() const { return rect().adjusted(shadow_, shadow_, -shadow_, -shadow_); }
  /// The edges of a resizable panel that a point lies on.
  Qt::Edges edgesAt(QPoint point) const;

  WindowHints& hints_;
  Kind kind_;
  int cornerRadius_;
  int shadow_ = 0;  ///< width of the margin around the content
  bool translucent_ = false;
  bool resizable_ = false;
  bool dragged_ = false;        ///< since it was last told where to be
  bool wantsKeyboard_ = false;  ///< has been given it, and no other window has taken it since
  bool main_ = false;           ///< is or was the desktop's active window since it was shown
  bool drawn_ = false;          ///< since it was shown
  Connection activeWindows_;
};

}  // namespace quillmark
