#include <memory>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unicode/regex.h>

#include "base/Log.h"
#include "base/Text.h"
#include "panels/review/MarkdownText.h"

namespace quillmark {

void PrintTo(const MarkdownRun& run, std::ostream* stream) {
  *stream << "pbicl"[static_cast<int>(run.style)] << "'" << run.text << "'";
}

void PrintTo(const MarkdownLine& line, std::ostream* stream) {
  *stream << static_cast<int>(line.kind) << " " << line.marker << " " << testing::PrintToString(line.runs) << "\n";
}

namespace {

using enum MarkdownStyle;
using testing::ElementsAre;
using Runs = std::vector<MarkdownRun>;

TEST(MarkdownLine, isKnownByItsStart) {
  using enum MarkdownLine::Kind;
  const struct {
    const char* line;
    MarkdownLine expected;
  } cases[] = {
      {"", {blank}},
      {" \t\u00A0", {blank}},
      {"  # Title\t", {heading1, "", {{"Title"}}}},
      {"# **Title**", {heading1, "", {{"**Title**"}}}},
      {"##  Two", {heading2, "", {{" Two"}}}},
      {"### Three", {heading3, "", {{"Three"}}}},
      {"#### Four", {paragraph, "", {{"#### Four"}}}},
      {"#title", {paragraph, "", {{"#title"}}}},
      {"# ", {paragraph, "", {{"#"}}}},
      {"- *one*", {bullet, "•", {{"one", italic}}}},
      {"* * *", {bullet, "•", {{" ", italic}}}},
      {"+ a", {bullet, "•", {{"a"}}}},
      {"- - -", {bullet, "•", {{"- -"}}}},
      {"-\u00A0a", {paragraph, "", {{"-\u00A0a"}}}},
      {"1. one", {numbered, "1. ", {{"one"}}}},
      {"10.\t`x`", {numbered, "10.\t", {{"x", code}}}},
      {"\u0661\u0662.\u3000 x", {numbered, "\u0661\u0662.\u3000", {{" x"}}}},
      {"1.one", {paragraph, "", {{"1.one"}}}},
      {"1.", {paragraph, "", {{"1."}}}},
      {". a", {paragraph, "", {{". a"}}}},
      {"> **said**", {quote, "", {{"said", bold}}}},
      {">said", {paragraph, "", {{">said"}}}},
      {"---", {divider}},
      {"--\u00A0--", {divider}},
      {"--", {paragraph, "", {{"--"}}}},
      {"--- x", {paragraph, "", {{"--- x"}}}},
  };
  for (const auto& [line, expected] : cases) {
    EXPECT_EQ(parseMarkdownLine(line), expected) << line;
  }
}

/// The runs by a regular expression library, one pattern for each style.
void slowRuns(const icu::UnicodeString& text, std::size_t level, Runs& runs) {
  const std::pair<const char*, MarkdownStyle> levels[] = {{R"(\*\*([^*]+)\*\*)", bold},
                                                          {R"(\*([^*]+)\*)", italic},
                                                          {R"(`([^`]+)`)", code},
                                                          {R"(\[([^\]]+)\]\(([^)]+)\))", link}};
  const auto add = [&runs](const icu::UnicodeString& part, MarkdownStyle style) {
    part.toUTF8String(runs.emplace_back(MarkdownRun{"", style}).text);
  };
  if (text.isEmpty() || level == std::size(levels)) {
    return text.isEmpty() ? void() : add(text, plain);
  }
  UErrorCode status = U_ZERO_ERROR;
  icu::RegexMatcher matcher(icu::UnicodeString::fromUTF8(levels[level].first), text, 0, status);
  int32_t from = 0;
  for (; matcher.find(); from = matcher.end(status)) {
    slowRuns(text.tempSubStringBetween(from, matcher.start(status)), level + 1, runs);
    add(matcher.group(1, status).findAndReplace("[", levels[level].second == link ? "" : "["), levels[level].second);
  }
  slowRuns(text.tempSubStringBetween(from), level + 1, runs);
}

/// Random texts of significant characters and some others.
class Texts {
 public:
  std::string text(std::size_t longest) {
    std::string result;
    for (std::size_t length = below(longest); length > 0; --length) {
      result += pieces[below(std::size(pieces))];
    }
    return result;
  }
  std::size_t below(std::size_t limit) { return random_() % limit; }

 private:
  inline static const char* const pieces[] = {"*", "**", "`", "[",  "]",  "](",  ")",  "a",      "é",     " ",
                                              "#", "- ", "-", "1.", "> ", "---", "\n", "\u2028", "\r\n\t"};
  std::mt19937 random_{20'261'125};
};

TEST(MarkdownRuns, agreeWithThePatterns) {
  Texts texts;
  for (int i = 0; i < 5000; ++i) {
    const auto text = texts.text(30);
    Runs expected;
    slowRuns(icu::UnicodeString::fromUTF8(text), 0, expected);
    ASSERT_EQ(parseMarkdownRuns(text), expected) << text;
  }
}

TEST(MarkdownText, growsLikeTheWholeText) {
  setLogSink([](std::string_view) {});
  Texts texts;
  for (int i = 0; i < 1000; ++i) {
    MarkdownText text;
    std::string whole;
    if (texts.below(2) == 0) {
      text.setText(whole = texts.text(20));
    }
    for (int chunks = 0; chunks < 8; ++chunks) {
      const auto before = text.lines();
      const auto chunk = texts.text(8);
      whole += chunk;
      const auto changed = texts.below(8) == 0 ? text.setText(whole) : text.append(chunk);
      std::vector<MarkdownLine> expected;
      std::ranges::transform(text::splitAtNewlines(whole), std::back_inserter(expected), parseMarkdownLine);
      ASSERT_EQ(text.lines(), expected) << whole;
      ASSERT_EQ(changed, std::ranges::mismatch(before, expected).in2 - expected.begin()) << whole;
    }
  }
  setLogSink({});
}

TEST(MarkdownText, saysWhatItSplitButNotOfAStream) {
  std::vector<std::string> lines;
  setLogSink([&lines](std::string_view line) { lines.emplace_back(line); });
  MarkdownText text;
  text.append("chunk");
  EXPECT_EQ(text.setText("a\r\n b"), 0u);
  EXPECT_EQ(text.setText("a"), 1u) << "two lines less, the rest as it was";
  setLogSink({});
  EXPECT_THAT(lines, ElementsAre("🔍 Original text: 'a\r\n b'", "🔍 Split into 3 lines: [\"a\", \"\", \" b\"]",
                                 "🔍 Original text: 'a'", "🔍 Split into 1 lines: [\"a\"]"));
}

}  // namespace
}  // namespace quillmark
