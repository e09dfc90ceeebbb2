#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The comparison of a text with its improved version: greedy forward scans with a short look-ahead, tuned for reworded
/// prose. Lengths count user-perceived characters, and texts are equal when they are canonically equivalent. All of it
/// is pure; any thread.
namespace quillmark {

enum class LineDiffType { unchanged, modified, added, removed };

/// One row of the comparison by lines. The lines are without white space at their ends.
struct LineDiff {
  std::optional<std::string> originalLine;  ///< absent in an added row
  std::optional<std::string> improvedLine;  ///< absent in a removed row
  LineDiffType type = LineDiffType::unchanged;
  friend bool operator==(const LineDiff&, const LineDiff&) = default;
};

std::vector<LineDiff> calculateLineDiff(const std::string& original, const std::string& improved);

enum class DiffType { unchanged, deleted, added, modified };

/// One token of the comparison by words.
struct DiffElement {
  std::string text;  ///< a word followed by one blank, or a line feed
  DiffType type = DiffType::unchanged;
  std::optional<std::string> originalText = std::nullopt;  ///< the old word of a modified element
  friend bool operator==(const DiffElement&, const DiffElement&) = default;
};

std::vector<DiffElement> calculateWordDiff(const std::string& original, const std::string& improved);

/// The lines of a text: its own, or else its sentences, or else the parts between its commas, or else pieces of up to
/// 80 characters. Never empty, except for a text of several blank lines.
std::vector<std::string> splitIntoLines(const std::string& text);
/// Each word followed by one blank, each line break as a line feed.
std::vector<std::string> tokenize(const std::string& text);
std::size_t levenshteinDistance(const std::string& a, const std::string& b);
/// The elements in rows, split at the line feeds, which are left out. Runs of line feeds make no empty rows, except one
/// at the very start.
std::vector<std::vector<DiffElement>> groupIntoLines(const std::vector<DiffElement>& elements);

}  // namespace quillmark
