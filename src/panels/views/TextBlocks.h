#pragma once

#include <QPalette>
#include <string_view>
#include <vector>

#include "panels/MarkdownText.h"
#include "panels/TextComparison.h"
#include "panels/views/TextColumn.h"

/// What a TextColumn draws of a result.
namespace quillmark::blocks {

/// Paragraphs as they are.
std::vector<TextBlock> plain(std::string_view text, const QPalette& palette);

/// Lines of Markdown from this one on.
std::vector<TextBlock> markdown(const std::vector<MarkdownLine>& lines, std::size_t first, const QPalette& palette);

/// Rows of a comparison, numbered from 1; a modified one is two blocks.
std::vector<TextBlock> rows(const std::vector<LineDiff>& rows, const QPalette& palette);

/// One line that stands for a content that is not there yet.
std::vector<TextBlock> note(const QString& text, const QPalette& palette);

}  // namespace quillmark::blocks
