#include "platform/desktop/QtPanelWindow.h"

#include <QBitmap>
#include <QPainter>

#include "platform/desktop/X11Hints.h"

namespace quillmark {

namespace {

Qt::WindowFlags flagsFor(QtPanelWindow::Kind kind) {
  const Qt::WindowFlags common = Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::NoDropShadowWindowHint;
  return kind == QtPanelWindow::Kind::indicator
             ? common | Qt::ToolTip | Qt::WindowTransparentForInput | Qt::WindowDoesNotAcceptFocus
             : common | Qt::Tool;
}

}  // namespace

QtPanelWindow::QtPanelWindow(Kind kind, int cornerRadius)
    : QWidget(nullptr, flagsFor(kind)), cornerRadius_(cornerRadius) {
  setAttribute(Qt::WA_ShowWithoutActivating);
  setAttribute(Qt::WA_QuitOnClose, false);
  // Also without a compositor, which can come later: a window can't gain translucency after it is made.
  setAttribute(Qt::WA_TranslucentBackground);
  winId();  // makes the native window now rather than at the first show
}

void QtPanelWindow::moveTopLeft(Point corner) { move(qRound(corner.x), qRound(corner.y)); }

void QtPanelWindow::prepare() {
  if (isVisible()) {
    return;
  }
  translucent_ = x11::compositorRunning();
  shapeCorners();
  x11::markAsPanel(*this);
}

void QtPanelWindow::orderFront() {
  prepare();
  show();
  raise();
}

void QtPanelWindow::makeKeyAndOrderFront() {
  prepare();
  show();
  x11::bringToFront(*this);
}

void QtPanelWindow::close() {
  // Closing would give up the native window, and the next show would have to wait for a new one.
  hide();
}

void QtPanelWindow::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  shapeCorners();
}

void QtPanelWindow::paintEvent(QPaintEvent*) {
  if (!translucent_) {
    QPainter(this).fillRect(rect(), palette().color(QPalette::Window));
  }
}

void QtPanelWindow::shapeCorners() {
  if (translucent_) {
    clearMask();
    return;
  }
  QBitmap shape(size());
  shape.clear();
  QPainter painter(&shape);
  painter.setBrush(Qt::color1);
  painter.setPen(Qt::NoPen);
  painter.drawRoundedRect(rect(), cornerRadius_, cornerRadius_);
  painter.end();
  setMask(shape);
}

}  // namespace quillmark
