#include "panels/review/MarkdownText.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "base/Log.h"
#include "base/Text.h"

namespace quillmark {
namespace {

constexpr auto npos = std::string_view::npos;

/// The first match of a style in a text.
struct Match {
  std::size_t start;
  std::size_t end;
  std::string text;  ///< of its run
};

// The searches below never backtrack: what one has scanned without a match, the next one does not scan again.

/// `\*\*([^*]+)\*\*`
std::optional<Match> findBold(std::string_view text) {
  for (std::size_t stars = text.find('*'); stars != npos;) {
    const auto inside = text.find_first_not_of('*', stars);
    const auto closing = text.find('*', inside);
    if (closing == npos) {
      break;
    }
    if (inside - stars >= 2 && text.substr(closing, 2) == "**") {
      return Match{inside - 2, closing + 2, std::string(text.substr(inside, closing - inside))};
    }
    stars = closing;
  }
  return std::nullopt;
}

/// `m([^m]+)m`, where m is the mark.
template <char mark>
std::optional<Match> findEnclosed(std::string_view text) {
  const auto inside = text.find_first_not_of(mark, text.find(mark));
  const auto closing = text.find(mark, inside);
  if (closing == npos) {
    return std::nullopt;
  }
  return Match{inside - 1, closing + 1, std::string(text.substr(inside, closing - inside))};
}

/// `\[([^\]]+)\]\(([^)]+)\)`
std::optional<Match> findLink(std::string_view text) {
  for (std::size_t position = 0;;) {
    // Of the opening brackets before the first closing one, the first decides: what follows is the same for all.
    const auto opening = text.find('[', position);
    const auto closing = text.find(']', opening);
    if (closing == npos) {
      return std::nullopt;
    }
    const auto target = closing + 2;
    if (closing > opening + 1 && text.substr(closing, 2) == "](" && target < text.size() && text[target] != ')') {
      const auto end = text.find(')', target);
      if (end == npos) {
        return std::nullopt;
      }
      std::string label(text.substr(opening, closing - opening));
      std::erase(label, '[');
      return Match{opening, end + 1, std::move(label)};
    }
    position = closing + 1;
  }
}

/// In the order in which they are applied; the text between the matches of one is left to the next.
constexpr struct {
  std::optional<Match> (*find)(std::string_view text);
  MarkdownStyle style;
} levels[] = {
    {findBold, MarkdownStyle::bold},
    {findEnclosed<'*'>, MarkdownStyle::italic},
    {findEnclosed<'`'>, MarkdownStyle::code},
    {findLink, MarkdownStyle::link},
};

void parse(std::string_view rest, std::size_t level, std::vector<MarkdownRun>& runs) {
  if (rest.empty()) {
    return;
  }
  if (level == std::size(levels)) {
    runs.push_back({std::string(rest), MarkdownStyle::plain});
    return;
  }
  while (auto match = levels[level].find(rest)) {
    parse(rest.substr(0, match->start), level + 1, runs);
    runs.push_back({std::move(match->text), levels[level].style});
    rest.remove_prefix(match->end);
  }
  parse(rest, level + 1, runs);
}

/// The length of the match of `^\d+\.\s`; 0 without one.
std::size_t numberLength(std::string_view line) {
  bool hasDigits = false;
  for (std::size_t position = 0; position < line.size();) {
    const auto c = text::nextCharacter(line, position);
    if (text::isDigit(c)) {
      hasDigits = true;
      continue;
    }
    const bool isNumber =
        hasDigits && c == '.' && position < line.size() && text::isWhitespace(text::nextCharacter(line, position));
    return isNumber ? position : 0;
  }
  return 0;
}

/// At least three dashes, and otherwise white space.
bool isDivider(std::string_view line) {
  std::size_t dashes = 0;
  for (std::size_t position = 0; position < line.size();) {
    const auto c = text::nextCharacter(line, position);
    if (c == '-') {
      ++dashes;
    } else if (!text::isWhitespace(c)) {
      return false;
    }
  }
  return dashes >= 3;
}

}  // namespace

std::vector<MarkdownRun> parseMarkdownRuns(std::string_view text) {
  std::vector<MarkdownRun> runs;
  parse(text, 0, runs);
  return runs;
}

MarkdownLine parseMarkdownLine(std::string_view line) {
  using enum MarkdownLine::Kind;
  constexpr struct {
    std::string_view start;
    MarkdownLine::Kind kind;
    std::string_view marker;
  } starts[] = {
      {"# ", heading1, ""}, {"## ", heading2, ""}, {"### ", heading3, ""}, {"- ", bullet, "•"},
      {"* ", bullet, "•"},  {"+ ", bullet, "•"},   {"> ", quote, ""},
  };
  line = text::trimmed(line);
  for (const auto& [start, kind, marker] : starts) {
    if (line.starts_with(start)) {
      const auto rest = line.substr(start.size());
      const bool isHeading = kind == heading1 || kind == heading2 || kind == heading3;
      return {kind, std::string(marker),
              isHeading ? std::vector{MarkdownRun{std::string(rest)}} : parseMarkdownRuns(rest)};
    }
  }
  if (const auto length = numberLength(line); length > 0) {
    return {numbered, std::string(line.substr(0, length)), parseMarkdownRuns(line.substr(length))};
  }
  if (line.empty() || isDivider(line)) {
    return {line.empty() ? blank : divider};
  }
  return {paragraph, "", parseMarkdownRuns(line)};
}

std::size_t MarkdownText::setText(std::string_view text) {
  const auto pieces = text::splitAtNewlines(text);
  std::string whole = "🔍 Original text: '";
  log(whole.append(text).append("'"));
  std::string list;
  std::vector<MarkdownLine> lines;
  lines.reserve(pieces.size());
  for (const auto piece : pieces) {
    list.append(list.empty() ? "\"" : ", \"").append(piece).append("\"");
    lines.push_back(parseMarkdownLine(piece));
  }
  log("🔍 Split into " + std::to_string(pieces.size()) + " lines: [" + list + "]");
  const auto changed = std::ranges::mismatch(lines, lines_).in1 - lines.begin();
  lines_ = std::move(lines);
  lastLine_ = pieces.back();
  return static_cast<std::size_t>(changed);
}

// Writes nothing to the log: a stream would write its whole text at each chunk.
std::size_t MarkdownText::append(std::string_view chunk) {
  const auto pieces = text::splitAtNewlines(chunk);
  auto last = parseMarkdownLine(lastLine_ += pieces.front());
  std::size_t changed = lines_.size();
  if (last != lines_.back()) {
    lines_.back() = std::move(last);
    --changed;
  }
  for (std::size_t i = 1; i < pieces.size(); ++i) {
    lines_.push_back(parseMarkdownLine(pieces[i]));
  }
  if (pieces.size() > 1) {
    lastLine_ = pieces.back();
  }
  return changed;
}

}  // namespace quillmark
