#include "panels/review/EditDistance.h"

#include <algorithm>
#include <utility>

namespace quillmark {
namespace {

constexpr std::size_t wordBits = 64;

std::size_t commonPrefix(std::u32string_view a, std::u32string_view b) {
  return static_cast<std::size_t>(std::ranges::mismatch(a, b).in1 - a.begin());
}

std::size_t commonSuffix(std::u32string_view a, std::u32string_view b) {
  std::size_t length = 0;
  while (length < a.size() && length < b.size() && a[a.size() - 1 - length] == b[b.size() - 1 - length]) {
    ++length;
  }
  return length;
}

std::uint64_t bit(std::size_t row) { return std::uint64_t{1} << (row % wordBits); }

}  // namespace

std::optional<std::size_t> EditDistance::within(std::u32string_view a, std::u32string_view b, std::size_t limit) {
  if (a.size() > b.size()) {
    std::swap(a, b);
  }
  if (b.size() - a.size() > limit) {
    return std::nullopt;
  }
  const std::size_t prefix = commonPrefix(a, b);
  a.remove_prefix(prefix);
  b.remove_prefix(prefix);
  const std::size_t suffix = commonSuffix(a, b);
  a.remove_suffix(suffix);
  b.remove_suffix(suffix);
  if (a.empty()) {
    return b.size();  // the difference in length, which is within the limit
  }
  noteRows(a);
  std::optional<std::size_t> distance;
  if (blockCount_ == 1) {
    distance = inOneBlock(a, b, limit);
  } else {
    const std::size_t highest = std::min(limit, b.size());
    for (std::size_t width = std::max(wordBits, b.size() - a.size()); !distance; width *= 2) {
      distance = inBand(a, b, std::min(width, highest));
      if (width >= highest) {
        break;
      }
    }
  }
  forgetRows(a);
  return distance && *distance <= limit ? distance : std::nullopt;
}

void EditDistance::noteRows(std::u32string_view pattern) {
  blockCount_ = (pattern.size() + wordBits - 1) / wordBits;
  rows_.assign(blockCount_, 0);  // for codes that are not in the pattern
  for (std::size_t row = 0; row < pattern.size(); ++row) {
    auto& place = pattern[row] < smallCodes ? smallPlaces_[pattern[row]] : otherPlaces_[pattern[row]];
    if (place == 0) {
      place = static_cast<std::uint32_t>(rows_.size() / blockCount_);
      rows_.resize(rows_.size() + blockCount_, 0);
    }
    rows_[place * blockCount_ + row / wordBits] |= bit(row);
  }
}

void EditDistance::forgetRows(std::u32string_view pattern) {
  for (const char32_t code : pattern) {
    if (code < smallCodes) {
      smallPlaces_[code] = 0;
    }
  }
  otherPlaces_.clear();
}

const std::uint64_t* EditDistance::rowsOf(char32_t code) const {
  std::size_t place = 0;
  if (code < smallCodes) {
    place = smallPlaces_[code];
  } else if (const auto found = otherPlaces_.find(code); found != otherPlaces_.end()) {
    place = found->second;
  }
  return rows_.data() + place * blockCount_;
}

std::optional<std::size_t> EditDistance::inOneBlock(std::u32string_view pattern, std::u32string_view text,
                                                    std::size_t limit) const {
  const std::uint64_t lastRow = bit(pattern.size() - 1);
  std::uint64_t up = ~std::uint64_t{0};
  std::uint64_t down = 0;
  std::size_t last = pattern.size();
  std::size_t columnsLeft = text.size();
  for (const char32_t code : text) {
    const std::uint64_t equal = *rowsOf(code);
    const std::uint64_t diagonal = (((equal & up) + up) ^ up) | equal;
    std::uint64_t right = down | ~(diagonal | up);  // rows whose value is one more than in the previous column
    std::uint64_t left = up & diagonal;             // one less
    last += (right & lastRow) != 0 ? 1 : 0;
    last -= (left & lastRow) != 0 ? 1 : 0;
    right = (right << 1) | 1;
    left <<= 1;
    const std::uint64_t vertical = equal | down;
    up = left | ~(vertical | right);
    down = right & vertical;
    // Each remaining column can reduce the value by one.
    if (last > limit + --columnsLeft) {
      return std::nullopt;
    }
  }
  return last;
}

std::optional<std::size_t> EditDistance::inBand(std::u32string_view pattern, std::u32string_view text,
                                                std::size_t width) {
  const std::size_t rowCount = pattern.size();
  const auto rowsIn = [&](std::size_t block) { return std::min(wordBits, rowCount - block * wordBits); };
  blocks_.clear();
  for (std::size_t column = 1; column <= text.size(); ++column) {
    const std::size_t first = column > width ? (std::min(column - width, rowCount) - 1) / wordBits : 0;
    const std::size_t end = (std::min(column + width, rowCount) - 1) / wordBits + 1;
    while (blocks_.size() < end) {
      // Below the band every row counts as one more than the row above, which no value exceeds.
      const std::size_t above = blocks_.empty() ? 0 : blocks_.back().last;
      blocks_.push_back({.last = above + rowsIn(blocks_.size())});
    }
    const std::uint64_t* const rows = rowsOf(text[column - 1]);
    int step = 1;  // of the row above the block, from the column before to this one; above the band not more than 1
    for (std::size_t index = first; index < end; ++index) {
      Block& block = blocks_[index];
      std::uint64_t equal = rows[index];
      const std::uint64_t vertical = equal | block.down;
      equal |= step < 0 ? 1 : 0;
      const std::uint64_t diagonal = (((equal & block.up) + block.up) ^ block.up) | equal;
      std::uint64_t right = block.down | ~(diagonal | block.up);
      std::uint64_t left = block.up & diagonal;
      const std::uint64_t lastRow = bit(rowsIn(index) - 1);
      const int stepBelow = (right & lastRow) != 0 ? 1 : (left & lastRow) != 0 ? -1 : 0;
      right = (right << 1) | (step > 0 ? 1 : 0);
      left = (left << 1) | (step < 0 ? 1 : 0);
      block.up = left | ~(vertical | right);
      block.down = right & vertical;
      block.last += static_cast<std::size_t>(stepBelow);
      step = stepBelow;
    }
  }
  const std::size_t distance = blocks_.back().last;
  return distance <= width ? std::optional(distance) : std::nullopt;
}

}  // namespace quillmark
