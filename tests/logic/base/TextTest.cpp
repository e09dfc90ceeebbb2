#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/Slug.h"
#include "base/Text.h"
#include "base/TextSearch.h"

namespace quillmark {
namespace {

using testing::ElementsAre;

TEST(Utf8Decoding, replacesEachMaximalInvalidPartOnce) {
  const struct {
    const char* name;
    std::string bytes;
    std::string expected;
  } cases[] = {
      {"valid text", "a\u00e9\u4e2d\U0001F600", "a\u00e9\u4e2d\U0001F600"},
      {"a lone continuation byte", "a\x80z", "a\uFFFDz"},
      {"a truncated three-byte character", "\xE4\xB8z", "\uFFFDz"},
      {"a truncated four-byte character at the end", "\xF0\x9F\x98", "\uFFFD"},
      {"a surrogate half, three parts", "\xED\xA0\x80", "\uFFFD\uFFFD\uFFFD"},
      {"an overlong slash, two parts", "\xC0\xAF", "\uFFFD\uFFFD"},
      {"the example of the Unicode standard", "\x61\xF1\x80\x80\xE1\x80\xC2\x62\x80\x63\x80\xBF\x64",
       "a\uFFFD\uFFFD\uFFFDb\uFFFDc\uFFFD\uFFFDd"},
  };
  for (const auto& [name, bytes, expected] : cases) {
    EXPECT_EQ(text::decodeUtf8(bytes), expected) << name;
  }
}

TEST(Newlines, everyCharacterOfTheSetSplits) {
  EXPECT_THAT(text::splitAtNewlines("a\nb\rc\vd\fe\u0085f\u2028g\u2029h"),
              ElementsAre("a", "b", "c", "d", "e", "f", "g", "h"));
  EXPECT_THAT(text::splitAtNewlines("a\r\nb"), ElementsAre("a", "", "b"));
  EXPECT_THAT(text::splitAtNewlines(""), ElementsAre(""));
  EXPECT_THAT(text::splitAtNewlines("\xE2\x80"), ElementsAre("\xE2\x80")) << "half a separator is no separator";
}

TEST(Trimming, takesUnicodeSpaceFromBothEndsOnly) {
  EXPECT_EQ(text::trimmed(" \t\u00a0\u3000 a b \u2028\n"), "a b");
  EXPECT_EQ(text::trimmed(" \n "), "");
  EXPECT_EQ(text::trimmed("\u4e2d\u3000"), "\u4e2d");
}

TEST(Slugs, followTheName) {
  EXPECT_EQ(slugify("Fix Grammar & Spelling"), "fix-grammar-spelling");
  EXPECT_EQ(slugify("a - b"), "a---b");
  EXPECT_EQ(slugify("\u00dcbersetzen"), "bersetzen");
  EXPECT_EQ(slugify("Caf\u00e9 Style"), "caf-style");
  EXPECT_EQ(slugify("\u7ffb\u8bd1"), "");
  EXPECT_EQ(slugify(" (My) LLM 2! "), "my-llm-2");
}

TEST(Graphemes, countWhatAUserSees) {
  EXPECT_EQ(text::graphemeCount("e\u0301"), 1u);
  EXPECT_EQ(text::graphemeCount("\U0001F469\u200D\U0001F469\u200D\U0001F467"), 1u);
  EXPECT_EQ(text::graphemeCount("abc"), 3u);
}

TEST(VersionOrder, comparesRunsOfDigitsAsNumbers) {
  const char* ascending[] = {"", "2", "2.0.4", "2.9.0", "2.09.1", "2.12.0", "2.12.0b", "2.99999999999999999999", "3"};
  for (std::size_t i = 0; i < std::size(ascending); ++i) {
    for (std::size_t j = 0; j < std::size(ascending); ++j) {
      const int order = text::compareNumerically(ascending[i], ascending[j]);
      EXPECT_EQ(order < 0, i < j) << ascending[i] << " and " << ascending[j];
      EXPECT_EQ(order > 0, i > j) << ascending[i] << " and " << ascending[j];
    }
  }
}

TEST(TextSearch, ignoresCaseAndDiacriticsButNoLetters) {
  const struct {
    const char* text;
    const char* part;
    bool contained;
  } cases[] = {
      {"Fix Grammar", "GRAM", true},
      {"Fix Grammar", "gramer", false},
      {"Fix Grammar", "", true},
      {"", "a", false},
      {"Résumé", "esum", true},
      {"Resume", "É", true},
      {"Re\u0301sume\u0301", "résumé", true},
      {"Änderung", "anderung", true},
      {"STRASSE", "straße", true},
      {"Weiß", "WEISS", true},
      {"Ελλάδας", "ΕΛΛΑΔΑΣ", true},
      {"Ещё", "ЕЩЕ", true},
      {"Łódź, smørrebrød, cœur", "lodz, smorrebrod, coeur", true},
      {"İstanbul ve Isparta ve ırmak", "istanbul ve ısparta ve IRMAK", true},
      {"שָׁלוֹם", "שלום", true},
      {"がくせい", "かくせい", false},
      {"か\u3099くせい", "がく", true},
      {"한국어", "하", false},
      {"한국어", "\u1112\u1161\u11ab", true},
      {"ที่", "ท่", false},
      {"翻译成法语", "法语", true},
      {"broken \xff bytes", "BYTES", true},
  };
  for (const auto& [text, part, contained] : cases) {
    EXPECT_EQ(text::localizedStandardContains(text, part), contained) << part << " in " << text;
  }
}

}  // namespace
}  // namespace quillmark
