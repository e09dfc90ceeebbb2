#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace quillmark {

/// Levenshtein's distance of sequences of numbers: insertion, deletion and substitution at 1 each. Reuses its tables
/// from one pair to the next.
///
/// The rows of the matrix are bits of machine words (Myers 1999, Hyyrö 2003). For long sequences only a band around the
/// diagonal is computed, widened until the distance lies inside or the limit is reached (Ukkonen 1985).
class EditDistance {
 public:
  EditDistance() : smallPlaces_(smallCodes, 0) {}

  /// The distance, or nothing if it exceeds the limit.
  std::optional<std::size_t> within(std::u32string_view a, std::u32string_view b, std::size_t limit);

 private:
  static constexpr std::size_t smallCodes = 0x300;

  /// 64 rows of one column of the matrix.
  struct Block {
    std::uint64_t up = ~std::uint64_t{0};  ///< rows that are one more than the row above
    std::uint64_t down = 0;                ///< rows that are one less
    std::size_t last = 0;                  ///< value of the last row
  };

  /// The distance of a pattern of up to 64 codes.
  std::optional<std::size_t> inOneBlock(std::u32string_view pattern, std::u32string_view text, std::size_t limit) const;
  /// The distance, if a band of this width is enough to find it.
  std::optional<std::size_t> inBand(std::u32string_view pattern, std::u32string_view text, std::size_t width);

  void noteRows(std::u32string_view pattern);
  void forgetRows(std::u32string_view pattern);
  /// The rows that hold a code, 64 in a word.
  const std::uint64_t* rowsOf(char32_t code) const;

  std::size_t blockCount_ = 0;
  std::vector<std::uint32_t> smallPlaces_;  ///< the rows of a code in `rows_`; 0 for a code without rows
  std::unordered_map<char32_t, std::uint32_t> otherPlaces_;  ///< the same for the codes above
  std::vector<std::uint64_t> rows_;
  std::vector<Block> blocks_;
};

}  // namespace quillmark
