#pragma once

#include <QWidget>

#include "platform/PanelWindow.h"

namespace quillmark {

/// The frameless window behind a floating panel; its content is a child widget. Rounded and
/// translucent where a compositor runs; cut to a rounded shape, hard edged and opaque, where none does.
class QtPanelWindow : public QWidget, public PanelWindow {
 public:
  enum class Kind {
    indicator,  ///< never takes the keyboard, lets clicks through
    surface,    ///< takes the keyboard when asked to
  };

  QtPanelWindow(Kind kind, int cornerRadius);

  void moveTopLeft(Point corner) override;
  void orderFront() override;
  void close() override;
  /// Shows the window and gives it the keyboard, without making this the active application for anyone who asks
  /// (see x11::markAsPanel). Only for a surface.
  void makeKeyAndOrderFront();

  /// Whether what is drawn half transparent shows what is behind the window. Settled anew before each show.
  bool translucent() const { return translucent_; }

 protected:
  /// The ground under everything where nothing shines through.
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void prepare();
  void shapeCorners();

  int cornerRadius_;
  bool translucent_ = false;
};

}  // namespace quillmark
