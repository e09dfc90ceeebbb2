#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// The small subset of Markdown in which answers are drawn. Each line is parsed on its own: a code block or a table is
/// just lines.
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
  /// The marker before the runs: "•", or a number as written, with its point and one blank; else empty.
  std::string marker = {};
  /// Empty for a divider or a blank line; one plain run for a heading, whose marks are shown.
  std::vector<MarkdownRun> runs = {};
  friend bool operator==(const MarkdownLine&, const MarkdownLine&) = default;
};

/// Parses a line without its newline, ignoring blanks at its ends. Linear time, like the next one.
MarkdownLine parseMarkdownLine(std::string_view line);

/// The text in runs, which are never nested. A link whose label is only brackets gives an empty run; adjacent runs may
/// both be plain.
std::vector<MarkdownRun> parseMarkdownRuns(std::string_view text);

/// The lines of a text that grows while it is shown. Main thread only.
class MarkdownText {
 public:
  /// Both return the index of the first line that has changed, or lines().size() if none has. There may also be fewer
  /// lines than before.
  std::size_t setText(std::string_view text);
  /// Parses the last line again, and what is new. The chunk may end anywhere except inside a character.
  std::size_t append(std::string_view chunk);

  /// Never empty: a text without characters has one blank line.
  const std::vector<MarkdownLine>& lines() const { return lines_; }

 private:
  std::vector<MarkdownLine> lines_ = std::vector<MarkdownLine>(1);
  std::string lastLine_;  ///< as written
};

}  // namespace quillmark
