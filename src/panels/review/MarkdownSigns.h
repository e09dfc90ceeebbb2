#pragma once

#include <cstdint>
#include <string_view>

namespace quillmark {

/// Whether a text that is still growing shows a sign of Markdown and is drawn with styles. The signs, as regular
/// expressions searched in the whole text:
///
///     bold      \*\*[^*]+\*\*    code block  ```[\s\S]*?```     quotation      ^\s*>\s+.+
///     emphasis  \*[^*]+\*        heading     ^#{1,6}\s+.+       table row      \|.+\|
///     emphasis  _[^_]+_          bullet      ^\s*[*+-]\s+.+     rule           ^\s*-{3,}\s*$
///     code      `[^`]+`          number      ^\s*\d+\.\s+.+     strikethrough  ~~[^~]+~~
///     link      \[.+\]\(.+\)
///
/// `^` and `$` are the ends of the text, not of a line; `.` is anything but a newline (text::isNewline). Each character
/// is examined once, and nothing of the text is kept.
class MarkdownSigns {
 public:
  void reset() { *this = {}; }
  /// The next part of the text; it may end anywhere except inside a character.
  void append(std::string_view chunk);
  /// A rule can cease to be one as the text grows; all other signs are final.
  bool found() const { return found_ || isRule(); }

 private:
  /// A mark, at least one other character, the same mark.
  class Enclosed {
   public:
    bool ends(bool isMark);

   private:
    enum class State : std::uint8_t { outside, marked, inside } state_ = State::outside;
  };

  /// The same with a mark of two characters; a text may have more of them in a row.
  class Struck {
   public:
    bool ends(bool isTilde);

   private:
    std::uint8_t tildes_ = 0;  ///< in a row just before, up to 2
    bool isInside_ = false;    ///< at least 2 tildes came before these
  };

  /// How much of a link has been seen on this line.
  enum class Link : std::uint8_t { outside, bracket, label, labelEnd, parenthesis, target };
  enum class TableRow : std::uint8_t { outside, bar, cell };
  /// The progress in the signs that are tied to the start of the text. Their first characters tell them apart.
  enum class Start : std::uint8_t {
    first,
    blanks,    ///< white space only
    hashes,    ///< a heading's, counted
    digits,    ///< a number's
    marker,    ///< a whole one: white space has to follow
    dashes,    ///< a bullet's or a rule's, counted up to 3
    ruleEnd,   ///< a rule, and white space
    content,   ///< after a marker's white space: anything but a newline completes the sign
    elsewhere  ///< none of the signs
  };

  bool endsLink(std::int32_t c);
  bool endsTableRow(std::int32_t c);
  bool endsStart(std::int32_t c);
  bool isRule() const { return start_ == Start::ruleEnd || (start_ == Start::dashes && count_ == 3); }

  // Bold implies emphasis: `**a**` contains `*a*`. A code block implies code, unless it is empty or backticks only: six
  // of them in a row are all that is left to look for. No other sign implies another one.
  Enclosed stars_;
  Enclosed underscores_;
  Enclosed code_;
  Struck struck_;
  std::uint8_t backticks_ = 0;  ///< in a row just before
  Link link_ = Link::outside;
  TableRow tableRow_ = TableRow::outside;
  Start start_ = Start::first;
  std::uint8_t count_ = 0;
  bool found_ = false;
};

}  // namespace quillmark
