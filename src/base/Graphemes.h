#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace quillmark::text {

/// A text as the characters that a user perceives.
struct Graphemes {
  /// One number for each; a character of one code point has that as its number.
  std::u32string codes;
  /// Where each begins in the UTF-8 text, and the text's length behind the last.
  std::vector<std::uint32_t> starts;
};

/// Gives extended grapheme clusters (UAX 29) numbers, the same for clusters that are canonically equivalent (UAX 15).
/// So two texts of one table are canonically equivalent if their codes are equal.
class GraphemeTable {
 public:
  Graphemes encode(std::string_view text);

 private:
  struct Hash {
    using is_transparent = void;
    std::size_t operator()(std::u16string_view cluster) const { return std::hash<std::u16string_view>()(cluster); }
  };

  void encodeRun(std::string_view text, std::uint32_t offset, Graphemes& result);
  char32_t codeOf(std::u16string_view cluster);

  std::unordered_map<std::u16string, char32_t, Hash, std::equal_to<>> clusters_;  ///< by their composed form
};

}  // namespace quillmark::text
