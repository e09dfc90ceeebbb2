#pragma once

#include <QPalette>
#include <vector>

#include "panels/review/MarkdownText.h"
#include "panels/review/TextComparison.h"
#include "widgets/TextColumn.h"

/// What a TextColumn draws of a result.
namespace quillmark::blocks {

constexpr double margin = 10;  ///< on both sides of what the panel shows

/// Lines of Markdown from this one on.
std::vector<TextBlock> markdown(const std::vector<MarkdownLine>& lines, std::size_t first, const QPalette& palette);

/// Rows of a comparison, numbered from 1; a modified one is two blocks.
std::vector<TextBlock> rows(const std::vector<LineDiff>& rows, const QPalette& palette);

}  // namespace quillmark::blocks
