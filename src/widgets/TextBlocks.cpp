#include "widgets/TextBlocks.h"

#include "base/Text.h"
#include "widgets/Look.h"
#include "widgets/QtText.h"

namespace quillmark::blocks {

TextBlock textBlock(const QPalette& palette, double size, QFont::Weight weight) {
  TextBlock block;
  block.font = look::font(size, weight);
  block.colour = palette.color(QPalette::WindowText);
  return block;
}

std::vector<TextBlock> plain(std::string_view text, const QPalette& palette) {
  std::vector<TextBlock> result;
  for (const auto line : text::splitAtNewlines(text)) {
    result.push_back(textBlock(palette));
    result.back().text = qt(line);
  }
  return result;
}

std::vector<TextBlock> note(const QString& text, const QPalette& palette) {
  TextBlock block = textBlock(palette);
  block.text = text;
  block.colour = look::secondary(palette);
  return {block};
}

}  // namespace quillmark::blocks
