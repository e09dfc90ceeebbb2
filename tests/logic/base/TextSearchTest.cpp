#include <gtest/gtest.h>

#include "base/TextSearch.h"

namespace quillmark {
namespace {

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
