#include "widgets/TextColumn.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyleHints>
#include <QTextBoundaryFinder>
#include <algorithm>
#include <cmath>

#include "widgets/ColumnInterface.h"
#include "widgets/Look.h"
#include "widgets/Symbols.h"

namespace quillmark {

namespace {

constexpr double lineSpacing = 1.45;
constexpr int symbolSide = 12;
constexpr double barWidth = 4;
constexpr double groundRadius = 4;

/// What precedes a block's text in the text of the whole column.
QString prefixOf(const TextBlock& block) {
  QString prefix;
  for (const QString& part : {block.marker, block.sign}) {
    prefix += part.isEmpty() ? QString() : part + u' ';
  }
  return prefix;
}

double lineHeightOf(const QFont& font) { return std::round(QFontInfo(font).pixelSize() * lineSpacing); }

}  // namespace

struct TextColumn::Laid {
  TextBlock block;
  std::unique_ptr<QTextLayout> layout;
  double laidWidth = -1;
  double top = 0;  ///< of the block, below its gap
  double height = 0;
  double widest = 0;
  double widestBefore = 0;  ///< over this block and all above
  bool rightToLeft = false;

  /// The left edge of something `width` wide that begins `distance` from the leading edge.
  double leftOf(double distance, double width, double columnWidth) const {
    return rightToLeft ? columnWidth - distance - width : distance;
  }
};

TextColumn::TextColumn(QWidget* parent) : ScrollArea(parent) { viewport()->setCursor(Qt::IBeamCursor); }

TextColumn::~TextColumn() = default;

QAccessibleInterface* TextColumn::makeAccessible() { return new ColumnInterface(*this); }

void TextColumn::setTextMargins(QMarginsF margins) {
  margins_ = margins;
  layOutFrom(0);
}

void TextColumn::replaceFrom(std::size_t first, std::vector<TextBlock> blocks, bool followEnd) {
  first = std::min(first, blocks_.size());
  const bool atEnd = verticalScrollBar()->value() == verticalScrollBar()->maximum();
  blocks_.resize(first);
  for (auto& block : blocks) {
    auto laid = std::make_unique<Laid>();
    laid->block = std::move(block);
    blocks_.push_back(std::move(laid));
  }
  allText_.reset();
  // Where text was only appended to a block, the selection in it is kept.
  const auto exists = [this](const Place& place) {
    return place.block < blocks_.size() && place.position <= blocks_[place.block]->block.text.size();
  };
  if (!exists(anchor_) || !exists(cursor_)) {
    anchor_ = cursor_ = {};
  }
  layOutFrom(first);
  if (followEnd && atEnd) {
    verticalScrollBar()->setValue(verticalScrollBar()->maximum());
  }
}

double TextColumn::textWidth() const { return std::max(1.0, viewport()->width() - margins_.left() - margins_.right()); }

void TextColumn::layOut(Laid& laid, double width) const {
  const TextBlock& block = laid.block;
  laid.laidWidth = width;
  laid.rightToLeft = block.text.isEmpty() ? layoutDirection() == Qt::RightToLeft : block.text.isRightToLeft();
  laid.layout = std::make_unique<QTextLayout>(block.text, block.font);
  const bool leads = block.alignment == Qt::AlignLeading;
  QTextOption option(leads && laid.rightToLeft ? Qt::AlignRight : block.alignment);
  option.setTextDirection(laid.rightToLeft ? Qt::RightToLeft : Qt::LeftToRight);
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  option.setTabStopDistance(4 * QFontMetricsF(block.font).horizontalAdvance(QLatin1Char(' ')));
  laid.layout->setTextOption(option);
  laid.layout->setFormats(block.formats);
  laid.layout->setCacheEnabled(true);
  const double lineHeight = lineHeightOf(block.font);
  const double lineWidth = std::max(1.0, width - block.lead);
  double y = block.above;
  laid.widest = 0;
  laid.layout->beginLayout();
  for (QTextLine line = laid.layout->createLine(); line.isValid(); line = laid.layout->createLine()) {
    line.setLineWidth(lineWidth);
    const double height = std::max(lineHeight, std::ceil(line.height()));
    line.setPosition({laid.leftOf(block.lead, lineWidth, width), y + std::floor((height - line.height()) / 2)});
    y += height;
    laid.widest = std::max(laid.widest, block.lead + line.naturalTextWidth());
  }
  laid.layout->endLayout();
  laid.height = y + block.below;
}

void TextColumn::layOutFrom(std::size_t first) {
  const double width = textWidth();
  double y = first == 0 ? 0 : blocks_[first - 1]->top + blocks_[first - 1]->height;
  double widest = first == 0 ? 0 : blocks_[first - 1]->widestBefore;
  const double changedFrom = y;
  for (std::size_t i = first; i < blocks_.size(); ++i) {
    Laid& laid = *blocks_[i];
    if (laid.laidWidth != width) {
      layOut(laid, width);
    }
    laid.top = y + (i == 0 ? 0 : laid.block.gap);
    y = laid.top + laid.height;
    laid.widestBefore = widest = std::max(widest, laid.widest);
  }
  height_ = y;
  widest_ = widest;
  setContentHeight(heightForText());
  const double top = changedFrom + margins_.top() - scrolled();
  viewport()->update(QRectF(0, top, viewport()->width(), std::max(0.0, viewport()->height() - top)).toAlignedRect());
  if (measured) {
    measured();
  }
}

void TextColumn::resizeEvent(QResizeEvent* event) {
  ScrollArea::resizeEvent(event);
  layOutFrom(0);
}

bool TextColumn::event(QEvent* event) {
  const bool result = ScrollArea::event(event);
  if (event->type() == QEvent::LayoutDirectionChange) {
    for (auto& laid : blocks_) {
      laid->laidWidth = -1;
    }
    layOutFrom(0);
  } else if (event->type() == QEvent::PaletteChange || event->type() == QEvent::ApplicationFontChange) {
    if (styleChanged) {
      styleChanged();
    }
  }
  return result;
}

void TextColumn::setOpacity(double opacity) {
  if (opacity != opacity_) {
    opacity_ = opacity;
    viewport()->update();
  }
}

std::size_t TextColumn::blockAt(double y) const {
  const auto after = std::ranges::upper_bound(blocks_, y, {}, [](const auto& laid) { return laid->top; });
  return after == blocks_.begin() ? 0 : std::size_t(after - blocks_.begin() - 1);
}

void TextColumn::paintEvent(QPaintEvent* event) {
  QPainter painter(viewport());
  painter.setOpacity(opacity_);
  const QPointF origin(margins_.left(), margins_.top() - scrolled());
  painter.translate(origin);
  const QRectF area = QRectF(event->rect()).translated(-origin);
  for (std::size_t i = blockAt(area.top()); i < blocks_.size() && blocks_[i]->top < area.bottom(); ++i) {
    paintBlock(painter, *blocks_[i], i);
  }
}

void TextColumn::paintBlock(QPainter& painter, const Laid& laid, std::size_t index) const {
  const TextBlock& block = laid.block;
  const double width = textWidth();
  const auto boxAt = [&](double distance, double boxWidth, double top, double height) {
    return QRectF(laid.leftOf(distance, boxWidth, width), laid.top + top, boxWidth, height);
  };
  if (block.ground.isValid()) {
    look::fillRounded(painter, boxAt(block.groundAt, width - block.groundAt, 0, laid.height), groundRadius,
                      block.ground);
  }
  if (block.bar.isValid()) {
    painter.fillRect(boxAt(block.barAt, barWidth, 0, laid.height), block.bar);
  }
  if (block.line.isValid()) {
    const double thickness = 1 / devicePixelRatioF();
    painter.fillRect(boxAt(0, width, std::floor(laid.height / 2), thickness), block.line);
    return;
  }
  const double firstLine = lineHeightOf(block.font);
  if (!block.symbol.empty()) {
    const QRectF box = boxAt(block.symbolAt, symbolSide, block.above + (firstLine - symbolSide) / 2, symbolSide);
    symbols::draw(painter, box.topLeft(), symbolSide, block.symbol, block.colour);
  }
  if (!block.marker.isEmpty()) {
    painter.setLayoutDirection(laid.rightToLeft ? Qt::RightToLeft : Qt::LeftToRight);
    painter.setFont(block.markerFont);
    painter.setPen(block.markerColour);
    const double room = block.lead - block.markerAt;
    painter.drawText(boxAt(block.markerAt, room, block.above, firstLine),
                     look::leading(laid.rightToLeft ? Qt::RightToLeft : Qt::LeftToRight), block.marker);
  }
  painter.setPen(block.colour);
  const auto [from, to] = selection();
  QList<QTextLayout::FormatRange> selected;
  if (from < to && from.block <= index && index <= to.block) {
    QTextCharFormat format;
    format.setBackground(palette().color(QPalette::Highlight));
    format.setForeground(palette().color(QPalette::HighlightedText));
    const int start = index == from.block ? from.position : 0;
    const int end = index == to.block ? to.position : int(block.text.size());
    selected.append({start, end - start, format});
  }
  laid.layout->draw(&painter, {0, laid.top}, selected);
}

TextColumn::Place TextColumn::placeAt(QPointF viewportPoint) const {
  if (blocks_.empty()) {
    return {};
  }
  const QPointF point = viewportPoint - QPointF(margins_.left(), margins_.top() - scrolled());
  if (point.y() < 0) {
    return {};
  }
  const std::size_t index = blockAt(point.y());
  const Laid& laid = *blocks_[index];
  const QTextLayout& layout = *laid.layout;
  for (int i = 0; i < layout.lineCount(); ++i) {
    const QTextLine line = layout.lineAt(i);
    if (i + 1 == layout.lineCount() || point.y() < laid.top + layout.lineAt(i + 1).y()) {
      return {index, line.xToCursor(point.x())};
    }
  }
  return {index, 0};
}

std::pair<TextColumn::Place, TextColumn::Place> TextColumn::selection() const { return std::minmax(anchor_, cursor_); }

void TextColumn::setSelection(Place anchor, Place cursor) {
  anchor_ = anchor;
  cursor_ = cursor;
  viewport()->update();
}

QString TextColumn::selectedText() const {
  const auto [from, to] = selection();
  QStringList pieces;
  for (std::size_t i = from.block; i <= to.block && i < blocks_.size(); ++i) {
    const QString& text = blocks_[i]->block.text;
    const int start = i == from.block ? from.position : 0;
    const int end = i == to.block ? to.position : int(text.size());
    pieces += text.mid(start, end - start);
  }
  return pieces.join(QLatin1Char('\n'));
}

const QString& TextColumn::allText() const {
  if (!allText_) {
    QStringList lines;
    for (const auto& laid : blocks_) {
      lines += prefixOf(laid->block) + laid->block.text;
    }
    allText_ = lines.join(QLatin1Char('\n'));
  }
  return *allText_;
}

void TextColumn::selectAll() {
  if (!blocks_.empty()) {
    setSelection({}, {blocks_.size() - 1, int(blocks_.back()->block.text.size())});
  }
}

bool TextColumn::copySelection() {
  const QString text = selectedText();
  if (text.isEmpty()) {
    return false;
  }
  if (copyRequested) {
    copyRequested(text);
  }
  return true;
}

void TextColumn::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::SelectAll)) {
    selectAll();
  } else if (event->key() == Qt::Key_Home || event->key() == Qt::Key_End) {
    verticalScrollBar()->setValue(event->key() == Qt::Key_Home ? 0 : verticalScrollBar()->maximum());
  } else if (!event->matches(QKeySequence::Copy) || !copySelection()) {
    ScrollArea::keyPressEvent(event);
  }
}

void TextColumn::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) {
    event->ignore();
    return;
  }
  const Place place = placeAt(event->position());
  setSelection(event->modifiers() & Qt::ShiftModifier ? anchor_ : place, place);
  selecting_ = true;
}

void TextColumn::mouseMoveEvent(QMouseEvent* event) {
  if (!selecting_) {
    event->ignore();
    return;
  }
  const double y = event->position().y();
  auto* const bar = verticalScrollBar();
  bar->setValue(bar->value() + int(std::min(0.0, y) + std::max(0.0, y - viewport()->height())));
  setSelection(anchor_, placeAt(event->position()));
}

void TextColumn::mouseReleaseEvent(QMouseEvent*) { selecting_ = false; }

void TextColumn::mouseDoubleClickEvent(QMouseEvent* event) {
  const Place place = placeAt(event->position());
  if (place.block >= blocks_.size()) {
    return;
  }
  const QString& text = blocks_[place.block]->block.text;
  QTextBoundaryFinder words(QTextBoundaryFinder::Word, text);
  words.setPosition(place.position);
  const int start = words.isAtBoundary() ? place.position : int(words.toPreviousBoundary());
  words.setPosition(place.position);
  const int end = int(words.toNextBoundary());
  setSelection({place.block, start}, {place.block, end < 0 ? int(text.size()) : end});
}

QRectF TextColumn::rectOfCharacter(int offset) const {
  for (const auto& laid : blocks_) {
    const int before = int(prefixOf(laid->block).size());
    const int length = before + int(laid->block.text.size());
    if (offset <= length) {
      const int position = std::max(0, offset - before);
      const QTextLine line = laid->layout->lineForTextPosition(position);
      if (!line.isValid()) {
        return {};
      }
      const double x = line.cursorToX(position);
      const double next = line.cursorToX(std::min(position + 1, int(laid->block.text.size())));
      return QRectF(std::min(x, next), laid->top + line.y(), std::abs(next - x), line.height())
          .translated(margins_.left(), margins_.top() - scrolled());
    }
    offset -= length + 1;
  }
  return {};
}

int TextColumn::offsetAt(QPointF point) const {
  const Place place = placeAt(point);
  int offset = 0;
  for (std::size_t i = 0; i <= place.block && i < blocks_.size(); ++i) {
    const TextBlock& block = blocks_[i]->block;
    offset += int(prefixOf(block).size()) + (i == place.block ? place.position : int(block.text.size()) + 1);
  }
  return offset;
}

}  // namespace quillmark
