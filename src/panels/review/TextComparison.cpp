#include "panels/review/TextComparison.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <unordered_map>
#include <utility>

#include "base/Graphemes.h"
#include "base/Text.h"
#include "panels/review/EditDistance.h"

namespace quillmark {
namespace {

constexpr double leastSimilarity = 0.6;   // for two lines to count as one modified line
constexpr std::size_t lineLookAhead = 3;  // exclusive end of the window
constexpr double wordDifference = 0.4;    // from here on, two words are unrelated
constexpr std::size_t wordLookAhead = 5;
constexpr std::size_t longestLine = 80;

/// The greatest number up to `length` for which the condition holds; it holds for 0 and, once broken, stays so.
std::size_t greatest(std::size_t length, const std::function<bool(double)>& holds) {
  std::size_t low = 0;
  for (std::size_t high = length; low < high;) {
    const std::size_t middle = low + (high - low + 1) / 2;
    holds(static_cast<double>(middle)) ? low = middle : high = middle - 1;
  }
  return low;
}

/// The greatest distance of similar lines, by the length of the longer one.
std::size_t lineLimit(std::size_t length) {
  return greatest(length, [longer = static_cast<double>(length)](double distance) {
    return 1.0 - distance / longer >= leastSimilarity;
  });
}

std::size_t wordLimit(std::size_t length) {
  return greatest(
      length, [longer = static_cast<double>(length)](double distance) { return distance / longer < wordDifference; });
}

std::vector<std::string_view> trimmedPieces(std::string_view text, std::string_view separators) {
  std::vector<std::string_view> pieces;
  for (;;) {
    const auto end = text.find_first_of(separators);
    if (const auto piece = text::trimmed(text.substr(0, end)); !piece.empty()) {
      pieces.push_back(piece);
    }
    if (end == std::string_view::npos) {
      return pieces;
    }
    text.remove_prefix(end + 1);
  }
}

std::vector<std::string> wrapped(std::string_view text) {
  std::vector<std::string> lines;
  std::string line;
  for (const auto word : text::splitAtBlanks(text)) {
    // The line is counted as a whole: a word that begins with a combining mark shares a character with the blank.
    if (!line.empty() && text::graphemeCount(line) + text::graphemeCount(word) + 1 > longestLine) {
      lines.push_back(std::exchange(line, std::string(word)));
      continue;
    }
    if (!line.empty()) {
      line += ' ';
    }
    line += word;
  }
  if (!line.empty()) {
    lines.push_back(std::move(line));
  }
  return lines;
}

/// The lines of one text as the comparison sees them.
struct Lines {
  Lines(const std::string& text, text::GraphemeTable& table) {
    for (const auto& line : splitIntoLines(text)) {
      texts.emplace_back(text::trimmed(line));
      codes.push_back(table.encode(texts.back()).codes);
    }
  }
  std::size_t size() const { return texts.size(); }

  std::vector<std::string> texts;
  std::vector<std::u32string> codes;
};

class LineComparison {
 public:
  LineComparison(const std::string& original, const std::string& improved)
      : original_(original, table_), improved_(improved, table_) {}

  std::vector<LineDiff> rows() {
    std::size_t i = 0;
    std::size_t j = 0;
    while (i < original_.size() && j < improved_.size()) {
      if (original_.codes[i] == improved_.codes[j]) {
        push(i++, j++, LineDiffType::unchanged);
      } else if (areSimilar(i, j)) {
        push(i++, j++, LineDiffType::modified);
      } else if (const auto next = ahead(i, original_.size(), [&](auto k) { return areSimilar(k, j); })) {
        remove(i, *next);
      } else if (const auto other = ahead(j, improved_.size(), [&](auto k) { return areSimilar(i, k); })) {
        add(j, *other);
      } else {
        remove(i, i + 1);
        add(j, j + 1);
      }
    }
    remove(i, original_.size());
    add(j, improved_.size());
    return std::move(rows_);
  }

 private:
  template <class Similar>
  static std::optional<std::size_t> ahead(std::size_t from, std::size_t size, Similar similar) {
    for (std::size_t k = from + 1; k < std::min(size, from + lineLookAhead); ++k) {
      if (similar(k)) {
        return k;
      }
    }
    return std::nullopt;
  }

  bool areSimilar(std::size_t i, std::size_t j) {
    const auto& a = original_.codes[i];
    const auto& b = improved_.codes[j];
    if (a.empty() || b.empty()) {
      return a.empty() && b.empty();
    }
    return distance_.within(a, b, lineLimit(std::max(a.size(), b.size()))).has_value();
  }

  void push(std::size_t i, std::size_t j, LineDiffType type) {
    rows_.push_back({original_.texts[i], improved_.texts[j], type});
  }
  void remove(std::size_t& from, std::size_t end) {
    for (; from < end; ++from) {
      rows_.push_back({original_.texts[from], std::nullopt, LineDiffType::removed});
    }
  }
  void add(std::size_t& from, std::size_t end) {
    for (; from < end; ++from) {
      rows_.push_back({std::nullopt, improved_.texts[from], LineDiffType::added});
    }
  }

  text::GraphemeTable table_;
  Lines original_;
  Lines improved_;
  EditDistance distance_;
  std::vector<LineDiff> rows_;
};

/// The tokens of one text: words, and line feeds in the place of line breaks.
struct Tokens {
  struct Token {
    std::string_view word;  ///< points into the text; empty for a line feed
    std::u32string_view codes;
    std::string text() const { return word.empty() ? "\n" : std::string(word) + ' '; }
    friend bool operator==(const Token& a, const Token& b) { return a.hash == b.hash && a.codes == b.codes; }
    std::size_t hash = 0;
  };

  Tokens(std::string_view text, text::GraphemeTable& table) : graphemes(table.encode(text)) {
    const std::u32string_view codes = graphemes.codes;
    std::size_t wordStart = 0;
    const auto endWord = [&](std::size_t end) {
      if (end > wordStart) {
        const auto from = graphemes.starts[wordStart];
        push(text.substr(from, graphemes.starts[end] - from), codes.substr(wordStart, end - wordStart));
      }
      wordStart = end + 1;
    };
    for (std::size_t i = 0; i < codes.size(); ++i) {
      if (codes[i] > U' ' && codes[i] < 0x7F) {
        continue;  // most of them, decided without computing a distance
      }
      const auto first = text.substr(graphemes.starts[i]);
      if (text::startsWithWhitespace(first)) {
        endWord(i);
        if (text::startsWithNewline(first)) {
          push({}, {});
        }
      }
    }
    endWord(codes.size());
  }
  std::size_t size() const { return list.size(); }
  const Token& operator[](std::size_t i) const { return list[i]; }

  text::Graphemes graphemes;
  std::vector<Token> list;

 private:
  void push(std::string_view word, std::u32string_view codes) {
    list.push_back({word, codes, std::hash<std::u32string_view>()(codes)});
  }
};

class WordComparison {
 public:
  WordComparison(std::string_view original, std::string_view improved)
      : original_(original, table_), improved_(improved, table_) {}

  std::vector<DiffElement> elements() {
    elements_.reserve(original_.size() + improved_.size());
    std::size_t i = 0;
    std::size_t j = 0;
    while (i < original_.size() && j < improved_.size()) {
      const auto& a = original_[i];
      const auto& b = improved_[j];
      if (a == b) {
        elements_.push_back({a.text(), DiffType::unchanged});
        ++i;
        ++j;
      } else if (const auto next = ahead(original_, i, b)) {
        push(original_, i, *next, DiffType::deleted);
      } else if (const auto other = ahead(improved_, j, a)) {
        push(improved_, j, *other, DiffType::added);
      } else if (isModification(a, b)) {
        elements_.push_back({b.text(), DiffType::modified, a.text()});
        ++i;
        ++j;
      } else {
        push(original_, i, i + 1, DiffType::deleted);
        push(improved_, j, j + 1, DiffType::added);
      }
    }
    push(original_, i, original_.size(), DiffType::deleted);
    push(improved_, j, improved_.size(), DiffType::added);
    return std::move(elements_);
  }

 private:
  static std::optional<std::size_t> ahead(const Tokens& tokens, std::size_t from, const Tokens::Token& wanted) {
    for (std::size_t k = from + 1; k < std::min(tokens.size(), from + wordLookAhead); ++k) {
      if (tokens[k] == wanted) {
        return k;
      }
    }
    return std::nullopt;
  }

  bool isModification(const Tokens::Token& a, const Tokens::Token& b) {
    return !a.codes.empty() && !b.codes.empty() &&
           distance_.within(a.codes, b.codes, wordLimit(std::max(a.codes.size(), b.codes.size()))).has_value();
  }

  void push(const Tokens& tokens, std::size_t& from, std::size_t end, DiffType type) {
    for (; from < end; ++from) {
      elements_.push_back({tokens[from].text(), type});
    }
  }

  text::GraphemeTable table_;
  Tokens original_;
  Tokens improved_;
  EditDistance distance_;
  std::vector<DiffElement> elements_;
};

}  // namespace

std::vector<LineDiff> calculateLineDiff(const std::string& original, const std::string& improved) {
  return LineComparison(original, improved).rows();
}

std::vector<DiffElement> calculateWordDiff(const std::string& original, const std::string& improved) {
  return WordComparison(original, improved).elements();
}

std::vector<std::string> splitIntoLines(const std::string& text) {
  std::vector<std::string> result;
  if (const auto lines = text::splitAtNewlines(text); lines.size() > 1) {
    for (const auto line : lines) {
      if (!text::trimmed(line).empty()) {
        result.emplace_back(line);
      }
    }
    return result;
  }
  if (const auto sentences = trimmedPieces(text, ".!?"); sentences.size() > 1) {
    for (const auto sentence : sentences) {
      result.push_back(std::string(sentence) + '.');
    }
    return result;
  }
  if (const auto parts = trimmedPieces(text, ","); parts.size() > 1) {
    for (const auto part : parts) {
      result.push_back(std::string(part) + ',');
    }
    result.back().pop_back();
    return result;
  }
  return text::graphemeCount(text) <= longestLine ? std::vector{text} : wrapped(text);
}

std::vector<std::string> tokenize(const std::string& text) {
  text::GraphemeTable table;
  const Tokens tokens(text, table);
  std::vector<std::string> result;
  std::ranges::transform(tokens.list, std::back_inserter(result), &Tokens::Token::text);
  return result;
}

std::size_t levenshteinDistance(const std::string& a, const std::string& b) {
  text::GraphemeTable table;
  const auto first = table.encode(a);
  const auto second = table.encode(b);
  return *EditDistance().within(first.codes, second.codes, std::max(first.codes.size(), second.codes.size()));
}

std::vector<std::vector<DiffElement>> groupIntoLines(const std::vector<DiffElement>& elements) {
  std::vector<std::vector<DiffElement>> lines;
  std::vector<DiffElement> line;
  for (const auto& element : elements) {
    if (element.text != "\n") {
      line.push_back(element);
    } else if (!line.empty() || lines.empty()) {
      lines.push_back(std::exchange(line, {}));
    }
  }
  if (!line.empty() || lines.empty()) {
    lines.push_back(std::move(line));
  }
  return lines;
}

}  // namespace quillmark
