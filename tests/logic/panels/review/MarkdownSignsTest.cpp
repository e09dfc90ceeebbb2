#include <array>
#include <memory>
#include <random>

#include <gtest/gtest.h>
#include <unicode/regex.h>

#include "panels/review/MarkdownSigns.h"

namespace quillmark {
namespace {

constexpr std::size_t bold = 0;
constexpr const char* patterns[] = {R"(\*\*[^*]+\*\*)",  R"(\*[^*]+\*)",  R"(_[^_]+_)",        R"(^#{1,6}\s+.+)",
                                    R"(\[.+\]\(.+\))",   R"(`[^`]+`)",    R"(```[\s\S]*?```)", R"(^\s*[*+-]\s+.+)",
                                    R"(^\s*\d+\.\s+.+)", R"(^\s*>\s+.+)", R"(\|.+\|)",         R"(^\s*-{3,}\s*$)",
                                    R"(~~[^~]+~~)"};

/// The numbers of the patterns that a regular expression library finds.
std::vector<std::size_t> signs(const std::string& text) {
  static const auto compiled = [] {
    std::vector<std::unique_ptr<icu::RegexPattern>> all;
    for (const char* pattern : patterns) {
      UErrorCode status = U_ZERO_ERROR;
      UParseError where;
      all.emplace_back(icu::RegexPattern::compile(icu::UnicodeString::fromUTF8(pattern), where, status));
      EXPECT_TRUE(U_SUCCESS(status)) << pattern;
    }
    return all;
  }();
  const auto unicode = icu::UnicodeString::fromUTF8(text);
  std::vector<std::size_t> found;
  for (std::size_t i = 0; i < compiled.size(); ++i) {
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::RegexMatcher> matcher(compiled[i]->matcher(unicode, status));
    if (matcher->find()) {
      found.push_back(i);
    }
  }
  return found;
}

TEST(MarkdownSigns, areThoseOfTheRegularExpressionsAfterEveryChunk) {
  const std::string pieces[] = {"*",   "_",  "#",      "###",    "[",      "]",      "](",         "[a]",   "(b)",
                                ")",   "`",  "```",    "-",      "+",      "1",      ".",          ">",     "|",
                                "---", "~",  "~~",     "a",      "é",      " ",      "\t",         "\n",    "\r",
                                "x",   "- ", "\u00A0", "\u0085", "\u0661", "\u2028", "\U0001D7D8", "\u3000"};
  std::mt19937 random(20'261'124);
  const auto below = [&random](std::size_t limit) { return random() % limit; };
  MarkdownSigns incremental;
  std::array<int, std::size(patterns)> alone{};
  int without = 0;
  int lost = 0;
  for (int i = 0; i < 30'000; ++i) {
    // Few kinds of pieces per text, or nearly all texts would have the same few signs.
    std::vector<std::string> some(2 + below(5));
    std::ranges::generate(some, [&] { return pieces[below(std::size(pieces))]; });
    std::string text;
    incremental.reset();
    for (std::size_t chunks = 1 + below(8); chunks > 0; --chunks) {
      std::string chunk;
      for (std::size_t length = below(6); length > 0; --length) {
        chunk += some[below(some.size())];
      }
      const bool before = incremental.found();
      incremental.append(chunk);
      const auto expected = signs(text += chunk);
      ASSERT_EQ(incremental.found(), !expected.empty()) << testing::PrintToString(text);
      lost += static_cast<int>(before && expected.empty());
      without += static_cast<int>(expected.empty());
      if (expected.size() == 1) {
        ++alone[expected.front()];
      }
    }
  }
  for (std::size_t i = 0; i < alone.size(); ++i) {
    EXPECT_EQ(alone[i] > 10, i != bold) << patterns[i] << ": " << alone[i] << " texts show whether it is looked for";
  }
  EXPECT_GT(without, 25'000);
  EXPECT_GT(lost, 10);
}

}  // namespace
}  // namespace quillmark
