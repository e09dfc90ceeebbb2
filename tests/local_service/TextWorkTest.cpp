#include <gmock/gmock.h>

#include "base/Text.h"
#include "local-service/PlainStream.h"
#include "local-service/TextScanner.h"
#include "local-service/TextWork.h"

namespace quillmark::service {
namespace {

struct Example {
  std::string before;
  std::string after;
};

/// Words that the scanner found, separated by a bar.
std::string wordsOf(std::string_view text) {
  std::string words;
  std::string all;
  for (const auto& piece : scanPieces(text)) {
    all += piece.text;
    if (piece.isWord) {
      words += (words.empty() ? "" : "|") + std::string(piece.text);
    }
  }
  EXPECT_EQ(all, text) << "a piece was lost";
  return words;
}

TEST(Scanning, onlyProseIsWords) {
  const std::vector<Example> examples = {
      {"It isn't, is it?", "It|isn't|is|it"},
      {"don\u2019t 'quote' well-known", "don\u2019t|quote|well|known"},
      {"see https://a.example/teh, mail teh@a.example or teh/hte", "see|mail|or"},
      {"call doTeh(), teh_hte, teh() and v2 with --teh", "call|and|with"},
      {"use `teh hte` and <b class=\"teh\">bold</b>", "use|and|bold"},
      {"one\n```\nteh hte\n```\ntwo", "one|two"},
      {"a < b, c `open", "a|b|c|open"},
      {"caf\u00e9 \u0442\u0435\u043a\u0441\u0442 \U0001F600", "caf\u00e9|\u0442\u0435\u043a\u0441\u0442"},
      {"**bold** (aside) {{name}}", "bold|aside"},
      {"\xff\xfe broken \xc3", "broken"},
  };
  for (const auto& [text, words] : examples) {
    EXPECT_EQ(wordsOf(text), words);
  }
}

struct SpellingOf : testing::Test {
  static Spelling& spelling() {
    static Spelling shared;
    return shared;
  }
};

TEST_F(SpellingOf, wrongWordsAreCorrectedInTheirCasing) {
  const std::vector<Example> examples = {
      {"teh cat", "the cat"},
      {"Teh cat", "The cat"},
      {"TEH CAT", "THE CAT"},
      {"I recieve your adress, definately.", "I receive your address, definitely."},
      {"We dont need alot of speling.", "We don't need a lot of spelling."},
      {"So i said", "So I said"},
      {"teh documnet needs better grammer", "the document needs better grammar"},
      {"My freind is writting sentances; their adress is wierd.",
       "My friend is writing sentences; their address is weird."},
      {"Paris in the the spring", "Paris in the spring"},
      {"he had had enough", "he had had enough"},
  };
  for (const auto& [before, after] : examples) {
    EXPECT_EQ(spelling().corrected(before), after);
    EXPECT_EQ(spelling().corrected(after), after) << "a second pass found more to change";
  }
}

TEST_F(SpellingOf, whatIsNoWrongWordComesBackByteForByte) {
  for (const std::string text : {
           "",
           "  the\tcat \r\n\r\n\u00a0sat\n",
           "We met Jonh Brwnlee at Quillmarq.",
           "Ask the NSFW or the HTPP people.",
           "na\u00efve caf\u00e9 r\u00e9sum\u00e9",
           "Das Haus ist nicht gro\u00df und die K\u00fcche ist kalt.",
           "Zxqvbnmk wqrtplk stays, it is no word at all.",
           "open ~/teh/hte.txt at teh.example",
       }) {
    EXPECT_EQ(spelling().corrected(text), text);
  }
}

TEST(PlainWork, isDoneByRules) {
  const struct {
    std::string (*work)(std::string_view);
    std::vector<Example> examples;
  } cases[] = {
      {titleCased,
       {{"the lord of the rings", "The Lord of the Rings"},
        {"what is it for\r\nA Tale Of iPhone and HTML", "What Is It For\r\nA Tale of iPhone and HTML"},
        {"a guide: the next step", "A Guide: The Next Step"}}},
      {shortened,
       {{"Basically, it works (mostly) very well.\nReally.", "It works well.\nReally."},
        {"Due to the fact that it rains, call f(x) now.", "Because it rains, call f(x) now."},
        {"Open (bracket", "Open (bracket"}}},
      {simplified, {{"We utilize numerous tools in order to assist.", "We use many tools to help."}}},
      {humanized, {{"Furthermore, it is late. I am sure they do not know.", "It's late. I'm sure they don't know."}}},
      {inYodaOrder,
       {{"You are strong.\nThe force will be with you!", "Strong, you are.\nBe with you, the force will!"},
        {"Luke went home.", "Luke went home."}}},
      {summarized,
       {{"Cats sleep a lot. My uncle drives. Cats hunt mice at night. Dr. Smith sings. Mice fear cats at night.",
         "Cats sleep a lot. Cats hunt mice at night. Mice fear cats at night."},
        {"One. Two.\n", "One. Two.\n"}}},
  };
  for (const auto& [work, examples] : cases) {
    for (const auto& [before, after] : examples) {
      EXPECT_EQ(work(before), after);
    }
  }
}

TEST(PlainWork, aTweetIsWholeSentencesInItsLength) {
  const auto sentence = [](char first) { return std::string(1, first) + std::string(99, 'a') + "."; };
  const std::string blank = " ";
  EXPECT_EQ(asTweet(" short \n"), "short");
  EXPECT_EQ(asTweet(sentence('A') + blank + sentence('B') + blank + sentence('C')),
            sentence('A') + blank + sentence('B'));
  std::string words;
  for (int i = 0; i < 100; ++i) {
    words += "word ";
  }
  const auto cut = asTweet(words);
  EXPECT_LE(text::graphemeCount(cut), 280U);
  EXPECT_TRUE(cut.ends_with("word…"));
  EXPECT_LE(text::graphemeCount(asTweet(std::string(400, 'x'))), 280U);
}

TEST(Answering, thePromptDecidesTheWork) {
  Spelling& spelling = SpellingOf::spelling();
  TextWork work(spelling);
  EXPECT_EQ(work.answer("Act like you are an expert grammar checker. Look for mistakes", "teh cat"), "the cat");
  EXPECT_EQ(work.answer("    Act like you are an funny Emoji expert.", "Cats love coffee"), "🐱 ❤️ ☕");
  EXPECT_EQ(work.answer("I want you to act as an email writer.\n- My name is Ada\n- I am the Author\n", "see you"),
            "Hello,\n\nsee you\n\nBest regards,\nAda\nAuthor");
  EXPECT_EQ(work.answer("You are a professional translator. Translate command titles well.", "a\n\nTitle: To Do"),
            "To Do");
  EXPECT_EQ(work.answer("Act like you are an expert writing assistant.", "teh end is really near."),
            "The end is near.");
}

TEST(Answering, whatNeedsAModelIsSaidAndNotPretended) {
  Spelling& spelling = SpellingOf::spelling();
  TextWork work(spelling);
  for (const auto* prompt : {"", "Act like you are an expert translator.", "Write a poem"}) {
    const auto answer = work.answer(prompt, "teh text\n");
    EXPECT_TRUE(answer.starts_with("teh text\n\n[")) << answer;
    EXPECT_THAT(answer, testing::HasSubstr("no language model"));
    EXPECT_THAT(answer, testing::HasSubstr("--upstream"));
  }
}

TEST(PlainStream, controlCharactersTravelAsLettersThatNoChunkCuts) {
  EXPECT_EQ(escapedForStream("a\nb\tc\r\nd\\e"), "a\\nb\\tc\\r\\nd\\e");
  const auto escaped = escapedForStream("ab\n\t\u00e9\U0001F600\r\nC:\\dir\\\\x\n");
  for (std::size_t size = 0; size <= escaped.size() + 1; ++size) {
    std::string joined;
    for (const auto chunk : streamChunks(escaped, size)) {
      joined += chunk;
      const bool cutsPair = chunk.back() == '\\' && joined.size() < escaped.size();
      const bool cutsCharacter =
          joined.size() < escaped.size() && (static_cast<unsigned char>(escaped[joined.size()]) & 0xC0U) == 0x80U;
      EXPECT_FALSE(cutsPair || cutsCharacter) << "size " << size << ", chunk " << chunk;
    }
    EXPECT_EQ(joined, escaped);
  }
}

}  // namespace
}  // namespace quillmark::service
