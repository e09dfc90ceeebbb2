#include "platform/desktop/QtPanelWindow.h"

#include <QBitmap>
#include <QCloseEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QVBoxLayout>
#include <QWindow>
#include <utility>

#include "base/Trace.h"

namespace quillmark {

namespace {

constexpr int shadowWidth = 20;
constexpr int shadowDrop = 4;  ///< vertical offset below the window
constexpr int grip = 6;        ///< width of the edges that can be dragged

Qt::WindowFlags flagsFor(QtPanelWindow::Kind kind) {
  const Qt::WindowFlags common = Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::NoDropShadowWindowHint;
  return kind == QtPanelWindow::Kind::indicator
             ? common | Qt::ToolTip | Qt::WindowTransparentForInput | Qt::WindowDoesNotAcceptFocus
             : common | Qt::Tool;
}

/// Our points are pixels divided by the scale, on the whole desktop. The toolkit's are so only within a screen, whose
/// corner it gives in pixels.
QPoint toolkitPoint(Point point) {
  for (const QScreen* screen : QGuiApplication::screens()) {
    const qreal scale = screen->devicePixelRatio();
    const QPoint corner = screen->geometry().topLeft();
    const QPointF inside = QPointF(point.x, point.y) - QPointF(corner) / scale;
    if (QRectF({}, screen->geometry().size()).contains(inside)) {
      return corner + inside.toPoint();
    }
  }
  return {qRound(point.x), qRound(point.y)};
}

/// The visible part of the shadow: the margin around the content, and what its round corners leave free.
QRegion shadowedPart(const QRect& window, const QRect& content, int radius) {
  return QRegion(window) - content.adjusted(1, radius, -1, -radius) - content.adjusted(radius, 1, -radius, -1);
}

void drawShadow(QPainter& painter, const QRectF& content, double radius) {
  painter.setPen(Qt::NoPen);
  // Overlapping rings add up to a shade that darkens towards the window.
  for (int ring = shadowWidth - shadowDrop; ring > 0; --ring) {
    const double nearness = 1 - double(ring) / (shadowWidth - shadowDrop);
    painter.setBrush(QColor::fromRgbF(0, 0, 0, static_cast<float>(0.03 * nearness * nearness)));
    painter.drawRoundedRect(content.adjusted(-ring, shadowDrop - ring, ring, shadowDrop + ring), radius + ring,
                            radius + ring);
  }
}

}  // namespace

QtPanelWindow::QtPanelWindow(WindowHints& hints, Kind kind, int cornerRadius)
    : QWidget(nullptr, flagsFor(kind)), hints_(hints), kind_(kind), cornerRadius_(cornerRadius) {
  setAttribute(Qt::WA_QuitOnClose, false);
  // Even without a compositor, which may start later: a window can't become translucent after it is created.
  setAttribute(Qt::WA_TranslucentBackground);
  if (kind == Kind::indicator) {
    setAttribute(Qt::WA_ShowWithoutActivating);
  } else {
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->setSizeConstraint(QLayout::SetNoConstraint);
    setMouseTracking(true);
    activeWindows_ = hints_.activeWindow.connect([this](WId window) { activeWindowIs(window); });
  }
  winId();  // creates the native window now rather than at the first show
}

void QtPanelWindow::setContent(QWidget& content) {
  layout()->addWidget(&content);
  content.setMouseTracking(true);  // so that its edges report the pointer
  setFocusProxy(&content);
  setWindowTitle(content.windowTitle());
}

void QtPanelWindow::moveTopLeft(Point corner) {
  dragged_ = false;
  move(toolkitPoint(corner) - QPoint(shadow_, shadow_));
}

Size QtPanelWindow::contentSize() const {
  const QRect content = contentRect();
  return {double(content.width()), double(content.height())};
}

void QtPanelWindow::setContentSize(Size size) {
  resize(qRound(size.width) + 2 * shadow_, qRound(size.height) + 2 * shadow_);
}

void QtPanelWindow::prepare() {
  if (isVisible()) {
    return;
  }
  main_ = false;
  drawn_ = false;
  translucent_ = hints_.compositorRunning();
  if (kind_ == Kind::indicator) {
    shapeIndicator();
  } else if (const int shadow = translucent_ ? shadowWidth : 0; shadow != shadow_) {
    const Size content = contentSize();
    const QPoint corner = pos() + QPoint(shadow_, shadow_) - QPoint(shadow, shadow);
    shadow_ = shadow;
    layout()->setContentsMargins(shadow_, shadow_, shadow_, shadow_);
    setContentSize(content);
    move(corner);
  }
  hints_.markAsPanel(*this);
  hints_.setShadow(*this, shadow_);
}

void QtPanelWindow::orderFront() {
  prepare();
  show();
  raise();
}

void QtPanelWindow::makeKeyAndOrderFront() {
  prepare();
  show();
  wantsKeyboard_ = true;
  hints_.bringToFront(*this);
}

void QtPanelWindow::close() {
  // Closing would destroy the native window, and the next show would have to wait for a new one.
  hide();
}

void QtPanelWindow::activeWindowIs(WId window) {
  if (!isVisible()) {
    return;
  }
  if (window == winId()) {
    wantsKeyboard_ = true;
    if (!std::exchange(main_, true)) {
      trace::mark(trace::panelHasKeyboard);
    }
  } else if (main_) {
    main_ = wantsKeyboard_ = false;
    resignedMain.emit();
  }
}

void QtPanelWindow::closeEvent(QCloseEvent* event) {
  event->ignore();
  closedBySystem.emit();
}

void QtPanelWindow::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  if (kind_ == Kind::indicator) {
    shapeIndicator();
  } else {
    hints_.setShadow(*this, shadow_);
  }
}

void QtPanelWindow::paintEvent(QPaintEvent* event) {
  if (!std::exchange(drawn_, true)) {
    // The widgets on this background are painted in the same pass, but after it.
    QMetaObject::invokeMethod(
        this, [] { trace::mark(trace::panelDrawn); }, Qt::QueuedConnection);
  }
  QPainter painter(this);
  if (kind_ == Kind::indicator) {
    if (!translucent_) {
      painter.fillRect(rect(), palette().color(QPalette::Window));
    }
    return;
  }
  const double hairline = 1 / devicePixelRatioF();
  const QRectF content = contentRect();
  painter.setRenderHint(QPainter::Antialiasing, translucent_);
  // Not under the content, where so many layers would take longer to paint than the content itself.
  if (const auto part = shadowedPart(rect(), contentRect(), cornerRadius_) & event->region();
      translucent_ && !part.isEmpty()) {
    painter.setClipRegion(part);
    drawShadow(painter, content, cornerRadius_);
    painter.setClipping(false);
  }
  // Without a shadow only the edge separates the panel from a window of the same colour behind it.
  QColor edge = palette().color(translucent_ ? QPalette::Mid : QPalette::PlaceholderText);
  edge.setAlphaF(translucent_ ? 1.0F : 0.6F);
  painter.setPen(QPen(edge, hairline));
  painter.setBrush(palette().color(QPalette::Window));
  const double radius = translucent_ ? cornerRadius_ : 0;
  painter.drawRoundedRect(content.adjusted(hairline / 2, hairline / 2, -hairline / 2, -hairline / 2), radius, radius);
}

Qt::Edges QtPanelWindow::edgesAt(QPoint point) const {
  Qt::Edges edges;
  if (resizable_) {
    const QRect content = contentRect();
    edges.setFlag(Qt::LeftEdge, point.x() < content.left() + grip);
    edges.setFlag(Qt::RightEdge, point.x() > content.right() - grip);
    edges.setFlag(Qt::TopEdge, point.y() < content.top() + grip);
    edges.setFlag(Qt::BottomEdge, point.y() > content.bottom() - grip);
  }
  return edges;
}

void QtPanelWindow::mousePressEvent(QMouseEvent* event) {
  if (kind_ == Kind::indicator || event->button() != Qt::LeftButton) {
    return;
  }
  if (const auto edges = edgesAt(event->position().toPoint())) {
    windowHandle()->startSystemResize(edges);
  } else {
    windowHandle()->startSystemMove();
  }
  dragged_ = true;
}

void QtPanelWindow::moveEvent(QMoveEvent*) {
  if (dragged_) {
    movedByUser.emit();
  }
}

void QtPanelWindow::mouseMoveEvent(QMouseEvent* event) {
  const auto edges = edgesAt(event->position().toPoint());
  if (edges == (Qt::LeftEdge | Qt::TopEdge) || edges == (Qt::RightEdge | Qt::BottomEdge)) {
    setCursor(Qt::SizeFDiagCursor);
  } else if (edges == (Qt::RightEdge | Qt::TopEdge) || edges == (Qt::LeftEdge | Qt::BottomEdge)) {
    setCursor(Qt::SizeBDiagCursor);
  } else if (edges & (Qt::LeftEdge | Qt::RightEdge)) {
    setCursor(Qt::SizeHorCursor);
  } else if (edges) {
    setCursor(Qt::SizeVerCursor);
  } else {
    unsetCursor();
  }
}

void QtPanelWindow::shapeIndicator() {
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
