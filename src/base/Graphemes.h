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

  struct WordHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view word) const { return std::hash<std::string_view>()(word); }
  };
  /// Where a word's characters stand in `known_`, whose starts count from the word's beginning.
  struct Place {
    std::size_t first = 0;
    std::size_t count = 0;
  };

  void encodeRun(std::string_view text, std::uint32_t offset, Graphemes& result);
  void learn(const std::vector<std::pair<std::string_view, Place*>>& words);
  void findClusters(std::string_view text, std::uint32_t offset, Graphemes& result);
  char32_t codeOf(std::u16string_view cluster);

  // Texts that are compared have most of their words in common, and finding clusters takes much longer than a look-up.
  std::unordered_map<std::string, Place, WordHash, std::equal_to<>> words_;
  Graphemes known_;
  std::unordered_map<std::u16string, char32_t, Hash, std::equal_to<>> clusters_;  ///< by their composed form
};

}  // namespace quillmark::text
