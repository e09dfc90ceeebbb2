#pragma once

#include <QWidget>

#include "platform/PanelWindow.h"
#include "platform/desktop/WindowHints.h"

namespace quillmark {

/// The frameless window behind a floating panel; its content is a child widget. With a compositor its corners are
/// rounded and a panel has a soft shadow; without one it is opaque, and a panel has a hairline around it.
class QtPanelWindow : public QWidget, public PanelWindow {
 public:
  enum class Kind {
    indicator,  ///< never takes the keyboard; clicks pass through
    panel,      ///< takes the keyboard when told to; can be dragged by its background
  };

  QtPanelWindow(WindowHints& hints, Kind kind, int cornerRadius);

  /// The widget that fills a panel inside its shadow; it becomes a child of the window and gives it its title.
  void setContent(QWidget& content);
  /// Lets the user drag the edges of a panel.
  void setResizable(bool resizable) { resizable_ = resizable; }

  void moveTopLeft(Point corner) override;
  void orderFront() override;
  void close() override;
  /// See WindowHints::markAsPanel for how the application in front stays active.
  void makeKeyAndOrderFront() override;
  Size contentSize() const override;
  void setContentSize(Size size) override;

  /// Whether it is shown and has the keyboard or has just been given it.
  bool hasKeyboard() const { return isVisible() && wantsKeyboard_; }

  /// Whether translucent parts show what is behind the window. Determined again before each show.
  bool translucent() const { return translucent_; }

 protected:
  /// The background colour.
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
  bool dragged_ = false;        ///< since it was last positioned
  bool wantsKeyboard_ = false;  ///< has been given the keyboard, and no other window has taken it since
  bool main_ = false;           ///< is or was the desktop's active window since it was shown
  bool drawn_ = false;          ///< since it was shown
  Connection activeWindows_;
};

}  // namespace quillmark
