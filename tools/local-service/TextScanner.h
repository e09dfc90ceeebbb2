#pragma once

#include <string_view>
#include <vector>

namespace quillmark::service {

/// A stretch of a text. Only words may be reworded; blanks, punctuation, code, addresses and tags stay as they are.
struct Piece {
  std::string_view text;
  bool isWord = false;

  friend bool operator==(const Piece&, const Piece&) = default;
};

/// The pieces of a text, in order and without a gap. A word is a run of letters with inner apostrophes. Fenced and
/// quoted code, HTML tags, and whatever contains a digit or looks like an address, a path or an identifier is not a
/// word.
std::vector<Piece> scanPieces(std::string_view text);

/// The sentences of a text (UAX 29, with the common English abbreviations), each with the blanks after it. A line end
/// always ends a sentence.
std::vector<std::string_view> scanSentences(std::string_view text);

}  // namespace quillmark::service
