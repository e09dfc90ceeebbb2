#pragma once

#include <QWidget>

#include "platform/PanelWindow.h"

namespace quillmark {

/// The frameless window behind a floating panel; its content draws in paintEvent() or stands in a layout. Rounded and
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
  bool translucent() const { return testAttribute(Qt::WA_TranslucentBackground); }

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void prepare();
  void shapeCorners();

  int cornerRadius_;
};

}  // namespace quillmark
