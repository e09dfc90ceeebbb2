#include "panels/review/views/ReviewBlocks.h"

#include "base/Localization.h"
#include "widgets/Look.h"
#include "widgets/QtText.h"
#include "widgets/TextBlocks.h"

namespace quillmark::blocks {
namespace {

void addRun(TextBlock& block, const MarkdownRun& run, const QPalette& palette) {
  const QString text = qt(run.text);
  QTextCharFormat format;
  switch (run.style) {
    case MarkdownStyle::plain:
      break;
    case MarkdownStyle::bold:
      format.setFontWeight(QFont::Bold);
      break;
    case MarkdownStyle::italic:
      format.setFontItalic(true);
      break;
    case MarkdownStyle::code:
      format.setFont(look::monospaced(textSize - 1));
      format.setForeground(look::secondary(palette));
      break;
    case MarkdownStyle::link:
      format.setForeground(look::changed(palette));
      format.setFontUnderline(true);
      break;
  }
  if (run.style != MarkdownStyle::plain) {
    block.formats.append({int(block.text.size()), int(text.size()), format});
  }
  block.text += text;
}

TextBlock heading(const QPalette& palette, double size, double above, double below) {
  TextBlock block = textBlock(palette, size, QFont::Bold);
  block.above = above;
  block.below = below;
  return block;
}

TextBlock markdownLine(const MarkdownLine& line, const QPalette& palette) {
  using enum MarkdownLine::Kind;
  TextBlock block = textBlock(palette);
  switch (line.kind) {
    case heading1:
      block = heading(palette, 24, 8, 4);
      break;
    case heading2:
      block = heading(palette, 19, 6, 3);
      break;
    case heading3:
      block = heading(palette, 16, 4, 2);
      break;
    case bullet:
    case numbered:
      block.marker = qt(line.marker);
      block.markerFont = block.font;
      block.markerColour = block.colour;
      block.markerAt = 8;
      block.lead = block.markerAt + QFontMetricsF(block.font).horizontalAdvance(block.marker.trimmed()) + 8;
      block.above = block.below = 1;
      break;
    case quote:
      block.colour = look::secondary(palette);
      block.bar = look::secondary(palette);
      block.barAt = 8;
      block.lead = 20;
      break;
    case divider:
      block.line = look::hairline(palette);
      block.font = look::font(1);
      block.above = block.below = 4;
      break;
    case blank:
      block.font = look::font(5);  // 7 high, and 1 more
      block.below = 1;
      break;
    case paragraph:
      block.above = block.below = 1;
      break;
  }
  for (const auto& run : line.runs) {
    addRun(block, run, palette);
  }
  return block;
}

}  // namespace

std::vector<TextBlock> markdown(const std::vector<MarkdownLine>& lines, std::size_t first, const QPalette& palette) {
  std::vector<TextBlock> result;
  for (std::size_t i = first; i < lines.size(); ++i) {
    result.push_back(markdownLine(lines[i], palette));
    result.back().gap = 6;
  }
  return result;
}

std::vector<TextBlock> rows(const std::vector<LineDiff>& rows, const QPalette& palette) {
  constexpr double numberColumn = 30;
  constexpr double symbolColumn = 20;
  std::vector<TextBlock> result;
  const auto add = [&](const std::string& line, const QString& number) -> TextBlock& {
    TextBlock block = textBlock(palette);
    block.text = qt(line);
    block.marker = number;
    block.markerFont = look::font(12);
    block.markerColour = look::secondary(palette);
    block.lead = numberColumn + symbolColumn;
    block.gap = 4;
    block.above = block.below = 2;
    result.push_back(std::move(block));
    return result.back();
  };
  const auto tint = [](TextBlock& block, const char* symbol, const QString& sign, const QColor& colour) {
    block.symbol = symbol;
    block.sign = sign;
    block.symbolAt = numberColumn + 4;
    block.colour = colour;
    block.ground = look::withOpacity(colour, 0.05);
    block.groundAt = numberColumn;
  };
  const QString deleted = qt(quillmark::tr("Deleted: {}", "")).trimmed();
  const QString added = qt(quillmark::tr("Added: {}", "")).trimmed();
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const LineDiff& row = rows[i];
    const QString number = QString::number(i + 1);
    const bool isOld = row.type == LineDiffType::removed || row.type == LineDiffType::modified;
    if (isOld) {
      tint(add(row.originalLine.value_or(""), number), "minus", deleted, look::removed(palette));
    }
    if (row.type != LineDiffType::removed) {
      TextBlock& block = add(row.improvedLine.value_or(""), isOld ? QString() : number);
      if (row.type != LineDiffType::unchanged) {
        tint(block, "plus", added, look::added(palette));
      }
    }
  }
  return result;
}

}  // namespace quillmark::blocks
