#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// The small part of Markdown in which answers are drawn. Each line stands for itself: a block of code or a table is
/// lines like others.
namespace quillmark {

enum class MarkdownStyle { plain, bold, italic, code, link };

struct MarkdownRun {
  std::string text;  ///< without its marks; a link's target is dropped
  MarkdownStyle style = MarkdownStyle::plain;
  friend bool operator==(const MarkdownRun&, const MarkdownRun&) = default;
};

struct MarkdownLine {
  enum class Kind { heading1, heading2, heading3, bullet, numbered, quote, divider, blank, paragraph };

  Kind kind = Kind::blank;
  /// What stands before the runs: "•", or a number as it was written, with its point and one blank; else empty.
  std::string marker = {};
  /// None in a divider and a blank line; one plain run in a heading, whose marks are shown.
  std::vector<MarkdownRun> runs = {};
  friend bool operator==(const MarkdownLine&, const MarkdownLine&) = default;
};

/// A line without a newline; blanks at its ends don't count. Takes time in proportion to its length, like the next one.
MarkdownLine parseMarkdownLine(std::string_view line);

/// The text in runs, none of them nested in another. A link without a label but brackets gives an empty run; neighbours
/// may both be plain.
std::vector<MarkdownRun> parseMarkdownRuns(std::string_view text);

/// The lines of a text that grows while it is shown. Main thread only.
class MarkdownText {
 public:
  /// Both return the index of the first line that is not what it was: lines().size() if they all are. There may also
  /// be fewer lines than before.
  std::size_t setText(std::string_view text);
  /// Parses the last line again, and what is new. The chunk may end anywhere but inside a character.
  std::size_t append(std::string_view chunk);

  /// Never empty: a text without characters has one blank line.
  const std::vector<MarkdownLine>& lines() const { return lines_; }

 private:
  std::vector<MarkdownLine> lines_ = std::vector<MarkdownLine>(1);
  std::string lastLine_;  ///< as it was written
};

}  // namespace quillmark
