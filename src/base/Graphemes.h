#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace quillmark::text {

/// A text as the characters that a user perceives.
struct Graphemes {
  /// One number per character; a character of a single code point has that code point as its number.
  std::u32string codes;
  /// The byte offset of each character in the UTF-8 text, then the text's length.
  std::vector<std::uint32_t> starts;
};

/// Numbers extended grapheme clusters (UAX 29); canonically equivalent clusters (UAX 15) have the same number. So two
/// texts encoded by one table are canonically equivalent if their codes are equal.
class GraphemeTable {
 public:
  Graphemes encode(std::string_view text);

 private:
  struct Hash {
    using is_transparent = void;
    std::size_t operator()(std::u16string_view cluster) const { return std::hash<std::u16string_view>()(cluster); }
  };

  struct WordHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view word) const { return std::hash<std::string_view>()(word); }
  };
  /// Where a word's characters are in `known_`, whose starts count from the word's beginning.
  struct Place {
    std::size_t first = 0;
    std::size_t count = 0;
  };

  void encodeRun(std::string_view text, std::uint32_t offset, Graphemes& result);
  void learn(const std::vector<std::pair<std::string_view, Place*>>& words);
  void findClusters(std::string_view text, std::uint32_t offset, Graphemes& result);
  char32_t codeOf(std::u16string_view cluster);

  // Compared texts have most of their words in common, and finding clusters takes much longer than a look-up.
  std::unordered_map<std::string, Place, WordHash, std::equal_to<>> words_;
  Graphemes known_;
  std::unordered_map<std::u16string, char32_t, Hash, std::equal_to<>> clusters_;  ///< by their composed form
};

}  // namespace quillmark::text
