#pragma once

#include <QPalette>
#include <string_view>
#include <vector>

#include "widgets/TextColumn.h"

/// What a TextColumn draws.
namespace quillmark::blocks {

constexpr double textSize = 14;  ///< of the user's text

/// An empty paragraph in the text colour.
TextBlock textBlock(const QPalette& palette, double size = textSize, QFont::Weight weight = QFont::Normal);

/// Paragraphs as they are.
std::vector<TextBlock> plain(std::string_view text, const QPalette& palette);

/// One line in place of content that does not exist yet.
std::vector<TextBlock> note(const QString& text, const QPalette& palette);

}  // namespace quillmark::blocks
