#include "panels/review/views/ErrorView.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

#include "base/Localization.h"
#include "widgets/Accessibility.h"
#include "widgets/Look.h"
#include "widgets/QtText.h"
#include "widgets/Symbols.h"
#include "widgets/TextBlocks.h"

namespace quillmark {

namespace {

constexpr int symbolSide = 32;
constexpr int gap = 8;
constexpr int titleHeight = 24;
constexpr int head = symbolSide + gap + titleHeight + gap;
constexpr int widestMessage = 480;

QString title() { return qt(quillmark::tr("Unable to Complete Request")); }

}  // namespace

ErrorView::ErrorView(QWidget* parent) : QWidget(parent) {
  setRole(*this, QAccessible::AlertMessage);
  setAccessibleName(title());
  message_.setAccessibleName(title());
  setFocusProxy(&message_);
  message_.measured = [this] { place(); };
  message_.styleChanged = [this] { fill(); };
}

void ErrorView::setMessage(const std::string& message) {
  text_ = message;
  fill();
}

void ErrorView::fill() {
  auto blocks = blocks::plain(text_, palette());
  for (auto& block : blocks) {
    block.alignment = Qt::AlignHCenter;
    block.colour = look::secondary(palette());
  }
  message_.replaceFrom(0, std::move(blocks));
}

void ErrorView::place() {
  const int width = std::min(widestMessage, this->width() - 2 * look::windowPadding);
  const int room = std::max(0, height() - head);
  const int messageHeight = std::min(room, int(std::ceil(message_.heightForText())));
  top_ = std::max(0, (height() - head - messageHeight) / 2);
  const QRect box((this->width() - width) / 2, top_ + head, width, messageHeight);
  if (message_.geometry() != box) {
    message_.setGeometry(box);
    update();
  }
}

void ErrorView::resizeEvent(QResizeEvent*) { place(); }

void ErrorView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  symbols::draw(painter, QPointF((width() - symbolSide) / 2, top_), symbolSide, "exclamationmark.triangle",
                look::secondary(palette()));
  painter.setFont(look::font(15, QFont::Medium));
  painter.setPen(palette().color(QPalette::WindowText));
  painter.drawText(QRect(0, top_ + symbolSide + gap, width(), titleHeight), Qt::AlignCenter, title());
}

}  // namespace quillmark
