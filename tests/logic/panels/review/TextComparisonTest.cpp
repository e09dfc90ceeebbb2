#include <memory>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unicode/brkiter.h>
#include <unicode/normalizer2.h>

#include "base/Text.h"
#include "panels/review/TextComparison.h"

namespace quillmark {

void PrintTo(const LineDiff& row, std::ostream* stream) {
  *stream << "umar"[static_cast<int>(row.type)] << " " << row.originalLine.value_or("-") << " | "
          << row.improvedLine.value_or("-") << "\n";
}

void PrintTo(const DiffElement& element, std::ostream* stream) {
  *stream << "udam"[static_cast<int>(element.type)] << " " << element.text << "| " << element.originalText.value_or("-")
          << "\n";
}

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A direct implementation of the rules, without regard to speed: characters are strings, the distance is the whole
/// matrix.
namespace slow {

using Characters = std::vector<icu::UnicodeString>;

Characters characters(const std::string& text) {
  UErrorCode status = U_ZERO_ERROR;
  static const std::unique_ptr<icu::BreakIterator> clusters(
      icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
  const auto unicode = icu::UnicodeString::fromUTF8(text);
  clusters->setText(unicode);
  Characters result;
  for (auto start = clusters->first(), end = clusters->next(); end != icu::BreakIterator::DONE;
       start = end, end = clusters->next()) {
    result.emplace_back(unicode, start, end - start);
  }
  return result;
}

icu::UnicodeString canonical(const icu::UnicodeString& text) {
  UErrorCode status = U_ZERO_ERROR;
  return icu::Normalizer2::getNFDInstance(status)->normalize(text, status);
}

bool equal(const std::string& a, const std::string& b) {
  return canonical(icu::UnicodeString::fromUTF8(a)) == canonical(icu::UnicodeString::fromUTF8(b));
}

std::size_t distance(const std::string& first, const std::string& second) {
  auto a = characters(first);
  auto b = characters(second);
  std::ranges::transform(a, a.begin(), canonical);
  std::ranges::transform(b, b.begin(), canonical);
  std::vector<std::vector<std::size_t>> matrix(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
  for (std::size_t i = 0; i <= a.size(); ++i) {
    for (std::size_t j = 0; j <= b.size(); ++j) {
      if (i == 0 || j == 0) {
        matrix[i][j] = i + j;
        continue;
      }
      const std::size_t cost = a[i - 1] == b[j - 1] ? 0 : 1;
      matrix[i][j] = std::min({matrix[i - 1][j] + 1, matrix[i][j - 1] + 1, matrix[i - 1][j - 1] + cost});
    }
  }
  return matrix[a.size()][b.size()];
}

/// Whether the distance is at most this many tenths of the longer text, or below them.
bool within(int tenths, bool orEqual, const std::string& a, const std::string& b) {
  const auto apart = 10 * distance(a, b);
  const auto most = static_cast<std::size_t>(tenths) * std::max(characters(a).size(), characters(b).size());
  return apart < most || (orEqual && apart == most);
}

}  // namespace slow

/// Texts like those of models, and worse ones: words in several scripts, small changes to them, marks and joiners.
class Texts {
 public:
  explicit Texts(std::uint32_t seed) : random_(seed) {}

  std::string text() {
    std::string result;
    const std::size_t words = below(40);
    const auto& script = scripts[below(std::size(scripts))];
    for (std::size_t i = 0; i < words; ++i) {
      result += script[below(script.size())];
      result += pick(separators);
    }
    return result;
  }

  /// The text with some of its characters changed, dropped, duplicated or moved.
  std::string changed(const std::string& text) {
    auto characters = slow::characters(text);
    for (std::size_t changes = below(characters.size() / 4 + 2); changes > 0 && !characters.empty(); --changes) {
      const auto at = static_cast<std::ptrdiff_t>(below(characters.size()));
      switch (below(4)) {
        case 0:
          characters.erase(characters.begin() + at);
          break;
        case 1:
          characters.insert(characters.begin() + at, icu::UnicodeString::fromUTF8(pick(pieces)));
          break;
        case 2:
          characters[static_cast<std::size_t>(at)] = icu::UnicodeString::fromUTF8(pick(pieces));
          break;
        default:
          std::rotate(characters.begin(), characters.begin() + at, characters.end());
      }
    }
    std::string result;
    for (const auto& character : characters) {
      character.toUTF8String(result);
    }
    return result;
  }

  std::size_t below(std::size_t limit) { return random_() % limit; }

 private:
  template <std::size_t size>
  const char* pick(const char* const (&list)[size]) {
    return list[below(size)];
  }

  inline static const std::vector<std::string> scripts[] = {
      {"the", "cat", "sat", "on", "colour", "color", "mat", "improvement", "improved", "a", "I", "don't"},
      {"Gr\u00fc\u00dfe", "Gru\u0308\u00dfe", "na\u00efve", "nai\u0308ve", "\u00e9t\u00e9", "e\u0301te\u0301",
       "\u01b0\u01a1\u0301"},
      {"\u043a\u043e\u0442", "\u0439", "\u0438\u0306", "\u043c\u0430\u0442", "\u0442\u0435\u043a\u0441\u0442"},
      {"\u732b\u304c", "\u304c", "\u304b\u3099", "\u30d1", "\u30cf\u309a", "\ud55c\uae00", "\u1112\u1161\u11ab",
       "\u5ea7\u3063\u305f"},
      {"\U0001F469\u200D\U0001F4BB", "\U0001F1E9\U0001F1EA\U0001F1EB", "\U0001F44D\U0001F3FD", "ok", "\u0e01\u0e33",
       "\u0915\u094d\u0937"},
  };
  inline static const char* const separators[] = {" ",  " ",  " ",    " ",  "  ",     ". ",     ", ",
                                                  "? ", "\n", "\r\n", "\t", "\u00a0", "\u2028", ""};
  inline static const char* const pieces[] = {"x",      " ",      "\u0301", "\n",         "\r",     ".",
                                              "\u00e9", "\u4e00", "\u200D", "\U0001F44D", "\u0600", "ab"};

  std::mt19937 random_;
};

TEST(TextComparison, givesBackBothTextsInTheRightKindsOfRows) {
  Texts texts(20'261'123);
  const auto trimmedLines = [](const std::string& text) {
    auto lines = splitIntoLines(text);
    std::ranges::transform(lines, lines.begin(), [](const auto& line) { return std::string(text::trimmed(line)); });
    return lines;
  };
  for (int pair = 0; pair < 20'000; ++pair) {
    const std::string original = texts.text();
    const std::string improved = texts.below(8) == 0 ? texts.text() : texts.changed(original);
    SCOPED_TRACE(original + "\n--\n" + improved);
    std::vector<std::string> before;
    std::vector<std::string> after;
    for (const auto& [o, i, type] : calculateLineDiff(original, improved)) {
      const bool areEqual = o && i && slow::equal(*o, *i);
      ASSERT_EQ(type == LineDiffType::unchanged, areEqual);
      ASSERT_EQ(type == LineDiffType::modified, o && i && !areEqual);
      ASSERT_TRUE(type != LineDiffType::modified || slow::within(4, true, *o, *i));
      if (o) {
        before.push_back(*o);
      }
      if (i) {
        after.push_back(*i);
      }
    }
    ASSERT_EQ(before, trimmedLines(original));
    ASSERT_EQ(after, trimmedLines(improved));

    before.clear();
    after.clear();
    const auto bare = [](const std::string& token) { return token.substr(0, token.size() - 1); };
    for (const auto& [text, type, was] : calculateWordDiff(original, improved)) {
      ASSERT_EQ(type == DiffType::modified, was.has_value());
      ASSERT_TRUE(!was || slow::within(4, false, bare(*was), bare(text)));
      if (type != DiffType::added) {
        before.push_back(was.value_or(text));
      }
      if (type != DiffType::deleted) {
        after.push_back(text);
      }
    }
    ASSERT_EQ(before, tokenize(original));
    ASSERT_TRUE(std::ranges::equal(after, tokenize(improved), slow::equal));
  }
}

TEST(TextComparison, findsTheDistanceOfTexts) {
  Texts texts(7);
  for (int pair = 0; pair < 2000; ++pair) {
    std::string original;
    while (original.size() < (pair % 30 == 0 ? 700 : 20)) {
      original += texts.text();
    }
    const std::string improved = pair % 3 == 0 ? texts.text() + texts.text() : texts.changed(original);
    ASSERT_EQ(levenshteinDistance(original, improved), slow::distance(original, improved));
  }
}

TEST(Lines, areTheTextsOwnOrItsSentencesOrItsParts) {
  EXPECT_THAT(splitIntoLines(" one \n\n\ttwo. Three\r\n"), ElementsAre(" one ", "\ttwo. Three"));
  EXPECT_THAT(splitIntoLines("only one. Really\n"), ElementsAre("only one. Really"));
  EXPECT_THAT(splitIntoLines("\n \n"), IsEmpty());
  EXPECT_THAT(splitIntoLines("Why? Because."), ElementsAre("Why.", "Because."));
  EXPECT_THAT(splitIntoLines("Why?"), ElementsAre("Why?"));
  EXPECT_THAT(splitIntoLines("a, b,, c"), ElementsAre("a,", "b,", "c"));
  EXPECT_THAT(splitIntoLines(""), ElementsAre(""));
  const std::string word(79, 'x');
  EXPECT_THAT(splitIntoLines(word + "\u00e9"), ElementsAre(word + "\u00e9"));
  EXPECT_THAT(splitIntoLines(word + " \u00e9"), ElementsAre(word, "\u00e9"));
  // A mark at a word's beginning joins the blank before it: 38 + 1 + 39 characters, and room for one more.
  const std::string marked = std::string(38, 'x') + " \u0301" + std::string(39, 'x') + " y";
  EXPECT_THAT(splitIntoLines(marked + " z"), ElementsAre(marked, "z"));
  EXPECT_THAT(splitIntoLines("a  b " + std::string(90, 'y') + " c"), ElementsAre("a  b", std::string(90, 'y'), "c"));
}

TEST(Words, areCutAtWhiteSpaceOfWhichLineBreaksStay) {
  EXPECT_THAT(tokenize(" don't\u00a0 stop.\r\n\tnow\u2028\u0085e\u0301 \u0301x "),
              ElementsAre("don't ", "stop. ", "\n", "now ", "\n", "\n", "e\u0301 ", "x "));
  EXPECT_THAT(tokenize(" \t"), IsEmpty());
}

TEST(LineRows, lookAheadTwoLinesAndNoFurther) {
  using enum LineDiffType;
  EXPECT_THAT(calculateLineDiff("", "x\ny"),
              ElementsAre(LineDiff{"", std::nullopt, removed}, LineDiff{std::nullopt, "x", added},
                          LineDiff{std::nullopt, "y", added}));
  EXPECT_THAT(calculateLineDiff("", ""), ElementsAre(LineDiff{"", "", unchanged}));
  const auto types = [](const std::string& original, const std::string& improved) {
    std::string all;
    for (const auto& row : calculateLineDiff(original, improved)) {
      all += "umar"[static_cast<int>(row.type)];
    }
    return all;
  };
  EXPECT_EQ(types("aaaa\nbbbb\ncccc", "cccc\ndddd"), "rrua");
  EXPECT_EQ(types("aaaa\nbbbb\neeee\ncccc", "cccc\ndddd"), "rararr");
  EXPECT_EQ(types("cccc\nx", "aaaa\nbbbb\ncccc\nx"), "aauu");
  EXPECT_EQ(types("abcde\n-", "abcxy\n-"), "mu") << "0.6 is enough";
  EXPECT_EQ(types("aaaa\nbbbb", "bbbb\naaaa"), "rua") << "the original is looked at first";
}

TEST(WordRows, callSmallChangesModificationsAndLookFourWordsAhead) {
  using enum DiffType;
  EXPECT_THAT(calculateWordDiff("colour", "color"), ElementsAre(DiffElement{"color ", modified, "colour "}));
  EXPECT_THAT(calculateWordDiff("brown", "red"),
              ElementsAre(DiffElement{"brown ", deleted}, DiffElement{"red ", added}));
  EXPECT_THAT(calculateWordDiff("abcde", "abcxy"),
              ElementsAre(DiffElement{"abcde ", deleted}, DiffElement{"abcxy ", added}))
      << "0.4 is too much";
  EXPECT_EQ(calculateWordDiff("abcdefgh", "abcdexyz").size(), 1u) << "0.375 is not";
  EXPECT_THAT(calculateWordDiff("a\n", "a b"),
              ElementsAre(DiffElement{"a ", unchanged}, DiffElement{"\n", deleted}, DiffElement{"b ", added}));
  EXPECT_THAT(calculateWordDiff("1 \u00e9", "e\u0301 1"),
              ElementsAre(DiffElement{"1 ", deleted}, DiffElement{"\u00e9 ", unchanged}, DiffElement{"1 ", added}))
      << "the original is looked at first";
  EXPECT_EQ(calculateWordDiff("1 2 3 4 x", "x").size(), 5u);
  EXPECT_EQ(calculateWordDiff("1 2 3 4 5 x", "x").size(), 7u) << "the word is five ahead, and not seen";
  EXPECT_THAT(calculateWordDiff(" ", "\t"), IsEmpty());
}

TEST(WordRows, areShownInLinesWithoutEmptyOnes) {
  const auto sizes = [](const std::string& text) {
    std::vector<std::size_t> all;
    for (const auto& line : groupIntoLines(calculateWordDiff(text, text))) {
      all.push_back(line.size());
    }
    return all;
  };
  EXPECT_THAT(sizes("a b\n\n\nc\n"), ElementsAre(2, 1));
  EXPECT_THAT(sizes("\n\na"), ElementsAre(0, 1));
  EXPECT_THAT(sizes(""), ElementsAre(0));
}

}  // namespace
}  // namespace quillmark
