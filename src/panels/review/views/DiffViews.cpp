#include "panels/review/views/DiffViews.h"

#include <QEvent>
#include <QHash>
#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>
#include <algorithm>
#include <cmath>

#include "base/Localization.h"
#include "panels/review/FlowLayout.h"
#include "panels/review/views/ReviewBlocks.h"
#include "panels/review/views/WordsInterface.h"
#include "widgets/Look.h"
#include "widgets/QtText.h"
#include "widgets/TextBlocks.h"

namespace quillmark {

namespace {

constexpr double sidePadding = 2;
constexpr double topPadding = 1;
constexpr double chipRadius = 2;
constexpr double rowGap = 4;

QString calculating() { return qt(quillmark::tr("Calculating differences...")); }

}  // namespace

LineByLineDiffView::LineByLineDiffView(const BackgroundComparison<LineDiff>& comparison, QWidget* parent)
    : TextColumn(parent), comparison_(comparison) {
  setTextMargins({blocks::margin, 0, blocks::margin, 0});
  setAccessibleName(qt(quillmark::tr("Line by Line")));
  styleChanged = [this] { fill(); };
  changes_ = comparison_.rows().bind([this](const auto&) { fill(); });
}

void LineByLineDiffView::fill() {
  const auto& rows = comparison_.rows().get();
  replaceFrom(0, rows ? blocks::rows(*rows, palette()) : blocks::note(calculating(), palette()));
}

WordLevelDiffView::WordLevelDiffView(const BackgroundComparison<DiffElement>& comparison, QWidget* parent)
    : ScrollArea(parent), comparison_(comparison) {
  setFont(look::font(blocks::textSize));
  setAccessibleName(qt(quillmark::tr("Word by Word")));
  changes_ = comparison_.rows().bind([this](const auto&) { fill(); });
}

QAccessibleInterface* WordLevelDiffView::makeAccessible() { return new WordsInterface(*this); }

QString WordLevelDiffView::help(const DiffElement& element) {
  switch (element.type) {
    case DiffType::unchanged:
      return {};
    case DiffType::deleted:
      return qt(quillmark::tr("Deleted: {}", element.text));
    case DiffType::added:
      return qt(quillmark::tr("Added: {}", element.text));
    case DiffType::modified:
      return qt(quillmark::tr("Changed from: {}", element.originalText.value_or("")));
  }
  return {};
}

void WordLevelDiffView::fill() {
  const auto& rows = comparison_.rows().get();
  setAccessibleDescription(rows ? QString() : calculating());
  lines_ = rows ? groupIntoLines(*rows) : std::vector<std::vector<DiffElement>>();
  layOut();
}

void WordLevelDiffView::layOut() {
  words_.clear();
  double bottom = blocks::margin;
  const double width = viewport()->width() - 2 * blocks::margin;
  const QFontMetricsF metrics(font());
  const double height = std::ceil(metrics.height() + 2 * topPadding);
  QHash<QString, double> widths;  // most words occur more than once
  std::vector<Size> boxes;
  for (const auto& line : lines_) {
    const std::size_t first = words_.size();
    boxes.clear();
    for (const auto& element : line) {
      words_.push_back({&element, qt(element.text), {}});
      const QString& text = words_.back().text;
      auto known = widths.find(text);
      if (known == widths.end()) {
        known = widths.insert(text, metrics.horizontalAdvance(text));
      }
      boxes.push_back({known.value() + 2 * sidePadding, height});
    }
    const auto measure = FlowLayout{}.measure(boxes, width);
    // Words are laid out in the reading direction of their script.
    const bool rightToLeft =
        line.empty() ? false : std::ranges::any_of(line, [](const auto& e) { return qt(e.text).isRightToLeft(); });
    for (std::size_t i = 0; i < boxes.size(); ++i) {
      const auto [x, y] = measure.positions[i];
      words_[first + i].box = QRectF(rightToLeft ? width - x - boxes[i].width : x, bottom + y, boxes[i].width, height);
    }
    bottom += std::max(measure.size.height, line.empty() ? height : 0) + rowGap;
  }
  setContentHeight(bottom);
  viewport()->update();
}

QPointF WordLevelDiffView::origin() const { return {blocks::margin, -scrolled()}; }

void WordLevelDiffView::paintEvent(QPaintEvent* event) {
  QPainter painter(viewport());
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setFont(font());
  if (!comparison_.rows().get()) {
    painter.setPen(look::secondary(palette()));
    const QRectF area = QRectF(viewport()->rect()).adjusted(blocks::margin, blocks::margin, -blocks::margin, 0);
    painter.drawText(area, look::leading(layoutDirection(), Qt::AlignTop), calculating());
    return;
  }
  painter.translate(origin());
  const QRectF area = QRectF(event->rect()).translated(-origin());
  auto word = std::ranges::lower_bound(words_, area.top(), {}, [](const Word& w) { return w.box.bottom(); });
  const QColor plain = palette().color(QPalette::WindowText);
  for (; word != words_.end() && word->box.top() < area.bottom(); ++word) {
    QColor colour = plain;
    switch (word->element->type) {
      case DiffType::unchanged:
        break;
      case DiffType::deleted:
        colour = look::removed(palette());
        break;
      case DiffType::added:
        colour = look::added(palette());
        break;
      case DiffType::modified:
        colour = look::changed(palette());
        break;
    }
    if (word->element->type != DiffType::unchanged) {
      look::fillRounded(painter, word->box, chipRadius, look::withOpacity(colour, 0.1));
    }
    painter.setPen(colour);
    const QRectF inside = word->box.adjusted(sidePadding, topPadding, -sidePadding, -topPadding);
    painter.drawText(inside, int(Qt::AlignVCenter | Qt::TextSingleLine), word->text);
    if (word->element->type == DiffType::deleted) {
      const double width = QFontMetricsF(font()).horizontalAdvance(word->text.trimmed());
      const double left = word->text.isRightToLeft() ? inside.right() - width : inside.left();
      painter.setPen(QPen(colour, 1));
      painter.drawLine(QPointF(left, inside.center().y()), QPointF(left + width, inside.center().y()));
    }
  }
}

bool WordLevelDiffView::viewportEvent(QEvent* event) {
  if (event->type() == QEvent::ToolTip) {
    const auto& help = static_cast<QHelpEvent&>(*event);
    const QPointF point = QPointF(help.pos()) - origin();
    const auto word = std::ranges::find_if(words_, [&](const Word& w) { return w.box.contains(point); });
    const QString text = word == words_.end() ? QString() : WordLevelDiffView::help(*word->element);
    QToolTip::showText(help.globalPos(), text.toHtmlEscaped(), viewport());
    return true;
  }
  return ScrollArea::viewportEvent(event);
}

void WordLevelDiffView::changeEvent(QEvent* event) {
  ScrollArea::changeEvent(event);
  if (event->type() == QEvent::ApplicationFontChange) {
    setFont(look::font(blocks::textSize));
  }
  if (event->type() == QEvent::FontChange) {
    layOut();
  }
}

void WordLevelDiffView::resizeEvent(QResizeEvent* event) {
  ScrollArea::resizeEvent(event);
  layOut();
}

}  // namespace quillmark
