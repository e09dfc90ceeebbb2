#include "widgets/Button.h"

#include <QKeyEvent>
#include <QPainter>
#include <QStyle>

#include "widgets/ButtonInterface.h"
#include "widgets/Look.h"
#include "widgets/Symbols.h"

namespace quillmark {

namespace {

constexpr int padding = 8;
constexpr int symbolSide = 16;
constexpr int trailingSide = 12;
constexpr int gap = 6;

}  // namespace

Button::Button(Look look, QWidget* parent) : QPushButton(parent), look_(look) {
  setAutoDefault(false);
  setFont(look::font(13, look == Look::filled ? QFont::Medium : QFont::Normal));
  setAttribute(Qt::WA_Hover);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QAccessibleInterface* Button::makeAccessible() {
  return new ButtonInterface(*this, isSegment() ? QAccessible::RadioButton : QAccessible::Button);
}

void Button::describe(const QString& title, const std::string& symbol, const QString& help) {
  setText(title);
  symbol_ = symbol;
  setToolTip(help);
  setAccessibleName(title.isEmpty() ? help : title);
  setAccessibleDescription(title.isEmpty() ? QString() : help);
  updateGeometry();
  update();
}

void Button::setLook(Look look) {
  look_ = look;
  update();
}

void Button::setTrailingSymbol(const std::string& symbol) {
  trailing_ = symbol;
  updateGeometry();
}

void Button::setTint(QPalette::ColorRole role) {
  tint_ = role;
  update();
}

QSize Button::sizeHint() const {
  int width = text().isEmpty() ? 6 : padding;
  width *= 2;
  if (!symbol_.empty() || text().isEmpty()) {
    width += symbolSide;
  }
  if (!text().isEmpty()) {
    width += fontMetrics().horizontalAdvance(text()) + 1 + (symbol_.empty() ? 0 : gap);
  }
  if (!trailing_.empty()) {
    width += trailingSide + gap;
  }
  const int room = isSegment() ? 0 : 2 * ringRoom;
  return {width + room, std::max(look::targetHeight, fontMetrics().height() + padding) + room};
}

QSize Button::minimumSizeHint() const { return {look::targetHeight, sizeHint().height()}; }

QRect Button::body() const { return isSegment() ? rect() : rect().adjusted(ringRoom, ringRoom, -ringRoom, -ringRoom); }

void Button::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
      event->ignore();  // the window decides where they lead
      break;
    default:
      QPushButton::keyPressEvent(event);
  }
}

void Button::enterEvent(QEnterEvent* event) {
  QPushButton::enterEvent(event);
  update();
}

void Button::leaveEvent(QEvent* event) {
  QPushButton::leaveEvent(event);
  update();
}

void Button::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const bool hovered = isEnabled() && underMouse();
  QColor ground;
  QColor ink = palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, tint_);
  if (look_ == Look::filled && isEnabled()) {
    ground = palette().color(QPalette::Highlight);
    ink = palette().color(QPalette::HighlightedText);
    if (isDown()) {
      ground = look::scheme(palette()) == look::Scheme::dark ? ground.lighter(112) : ground.darker(112);
    } else if (hovered) {
      ground = look::scheme(palette()) == look::Scheme::dark ? ground.lighter(106) : ground.darker(106);
    }
  } else if (look_ == Look::filled) {
    ground = look::card(palette());
    ink = look::withOpacity(palette().color(QPalette::WindowText), 0.4);
  } else if (look_ == Look::raised) {
    ground =
        look::scheme(palette()) == look::Scheme::dark ? look::hairline(palette()) : palette().color(QPalette::Window);
  } else if (isDown()) {
    ground = look::hairline(palette());
  } else if (hovered) {
    ground = look::card(palette());
  }
  const QRect box = body();
  if (ground.isValid()) {
    const QRectF chip = QRectF(box).adjusted(0.5, 0.5, -0.5, -0.5);
    look::fillRounded(painter, chip, look::chipRadius, ground);
    if (look_ == Look::raised) {
      painter.setPen(QPen(look::hairline(palette()), 1 / devicePixelRatioF()));
      painter.setBrush(Qt::NoBrush);
      painter.drawRoundedRect(chip, look::chipRadius, look::chipRadius);
    }
  }
  if (hasFocus()) {
    const int inset = isSegment() ? ringRoom : 0;
    look::drawFocusRing(painter, QRectF(box).adjusted(inset, inset, -inset, -inset), look::chipRadius - inset,
                        palette());
  }

  const auto drawSymbol = [&](const std::string& name, int x, int side) {
    const QRect place = QStyle::visualRect(layoutDirection(), rect(), QRect(x, (height() - side) / 2, side, side));
    symbols::draw(painter, place.topLeft(), side, name, ink);
  };
  const int trailing = trailing_.empty() ? 0 : trailingSide + gap;
  if (text().isEmpty() && symbol_.empty()) {
    return;
  }
  if (text().isEmpty()) {
    drawSymbol(symbol_, (width() - symbolSide) / 2, symbolSide);
    return;
  }
  const int lead = symbol_.empty() ? 0 : symbolSide + gap;
  const int room = box.width() - 2 * padding - lead - trailing;
  const QString title = fontMetrics().elidedText(text(), Qt::ElideRight, room);
  const int titleWidth = fontMetrics().horizontalAdvance(title) + 1;
  // The title is in the middle, unless a symbol follows it.
  int x = trailing_.empty() ? (width() - lead - titleWidth) / 2 : box.left() + padding;
  if (!symbol_.empty()) {
    drawSymbol(symbol_, x, symbolSide);
    x += lead;
  }
  painter.setPen(ink);
  const QRect place = QStyle::visualRect(layoutDirection(), rect(), QRect(x, 0, titleWidth, height()));
  painter.drawText(place, Qt::AlignVCenter | Qt::TextSingleLine, title);
  if (!trailing_.empty()) {
    drawSymbol(trailing_, x + titleWidth + gap, trailingSide);
  }
}

}  // namespace quillmark
