#include <gmock/gmock.h>

#include "desktop/x11/X11Adapters.h"

namespace quillmark {
namespace {

using namespace std::chrono_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsSupersetOf;
using testing::Not;
using testing::Pair;

std::string longText(std::size_t size) {
  std::string text;
  for (int line = 0; text.size() < size; ++line) {
    text += "Zeile " + std::to_string(line) + " äöü\n";
  }
  return text;
}

struct X11PasteboardTest : X11Adapters {
  ClipboardClient other{session.display(), loop};

  const ClipboardClient::Answer& fetch(const std::string& target) {
    const auto& answer = other.request(target);
    EXPECT_TRUE(loop.runUntil([&] { return answer.done; })) << target;
    return answer;
  }
};

TEST_F(X11PasteboardTest, offersItsTextInEveryFormThatProgramsAskFor) {
  pasteboard.setString("Grüße");

  EXPECT_THAT(fetch("TARGETS").atoms(),
              IsSupersetOf({"UTF8_STRING", "text/plain;charset=utf-8", "text/plain", "STRING"}));
  EXPECT_EQ(fetch("UTF8_STRING").bytes, "Grüße");
  EXPECT_EQ(fetch("text/plain;charset=utf-8").bytes, "Grüße");
  EXPECT_EQ(fetch("STRING").bytes,
            "Gr\xFC\xDF"
            "e");
  EXPECT_EQ(fetch("TEXT").type, "UTF8_STRING");
  EXPECT_TRUE(fetch("image/png").refused);

  pasteboard.setString("日本語");
  EXPECT_TRUE(fetch("STRING").refused) << "Latin-1 can't hold it";
  EXPECT_THAT(fetch("TARGETS").atoms(), Not(Contains("STRING")));
}

TEST_F(X11PasteboardTest, answersSeveralTargetsInOneRequest) {
  pasteboard.setString("one");
  const auto& parts = other.requestMultiple({"UTF8_STRING", "image/png", "text/plain"});
  ASSERT_TRUE(loop.runUntil([&] { return other.multipleDone(); }));
  EXPECT_THAT(parts, ElementsAre(Pair("UTF8_STRING", "one"), Pair("text/plain", "one")));
}

TEST_F(X11PasteboardTest, clearedItReadsAsNothingAndAsksManagersNotToKeepIt) {
  pasteboard.setString("old");
  pasteboard.clearContents();

  EXPECT_EQ(read(), std::nullopt);
  EXPECT_THAT(fetch("TARGETS").atoms(), Not(Contains("UTF8_STRING")));
  EXPECT_TRUE(fetch("UTF8_STRING").refused);
  EXPECT_EQ(fetch("x-kde-passwordManagerHint").bytes, "secret");
}

TEST_F(X11PasteboardTest, followsEveryChangeOfOwner) {
  for (int round = 0; round < 20; ++round) {
    const auto text = "text " + std::to_string(round);
    pasteboard.clearContents();
    other.own({{"UTF8_STRING", text}});
    EXPECT_EQ(read(), text);
    other.own({{"UTF8_STRING", "not seen"}});  // the news of it lies unread while we take over
    pasteboard.setString(text);
    EXPECT_EQ(read(), text);
    EXPECT_EQ(fetch("UTF8_STRING").bytes, text);
  }
}

TEST_F(X11PasteboardTest, takesWhatTheOwnerHas) {
  other.own({{"text/plain;charset=utf-8", "plain"}});
  EXPECT_EQ(read(), "plain");
  other.own({{"STRING", "na\xEFve"}});
  EXPECT_EQ(read(), "naïve");
  other.own({{"UTF8_STRING", std::string("counted in\0", 11)}});
  EXPECT_EQ(read(), "counted in");
  other.own({{"UTF8_STRING", "broken \xFF"}});
  EXPECT_EQ(read(), "broken \uFFFD");
  other.own({{"image/png", "not a text"}});
  EXPECT_EQ(read(), std::nullopt);
  other.own({{"UTF8_STRING", ""}});
  EXPECT_EQ(read(), std::nullopt);
}

TEST_F(X11PasteboardTest, longTextsGoInPiecesBothWaysToSeveralReadersAtOnce) {
  const auto text = longText(1'000'000);
  pasteboard.setString(text);
  ClipboardClient third{session.display(), loop};
  const auto& utf8 = other.request("UTF8_STRING");
  const auto& plain = other.request("text/plain");
  const auto& elsewhere = third.request("UTF8_STRING");
  ASSERT_TRUE(loop.runUntil([&] { return utf8.done && plain.done && elsewhere.done; }));
  EXPECT_TRUE(utf8.inPieces);
  EXPECT_EQ(utf8.bytes, text);
  EXPECT_EQ(plain.bytes, text);
  EXPECT_EQ(elsewhere.bytes, text);

  other.own({{"UTF8_STRING", text}}, 7777);  // cuts inside of characters
  std::vector<std::string> texts;
  for (int i = 0; i < 3; ++i) {
    pasteboard.readString([&](std::optional<std::string> answer) { texts.push_back(answer.value_or("nothing")); });
  }
  ASSERT_TRUE(loop.runUntil([&] { return texts.size() == 3; }));
  EXPECT_THAT(texts, testing::Each(text));
}

TEST_F(X11PasteboardTest, anOwnerThatHangsCostsNothingButTheText) {
  other.own({{"UTF8_STRING", "never seen"}});
  other.hang();
  std::optional<std::string> text = "unset";
  pasteboard.readString([&](std::optional<std::string> answer) { text = std::move(answer); });

  int ticks = 0;
  auto timer = loop.every(10ms, [&] { ++ticks; });
  ASSERT_TRUE(loop.runUntil([&] { return text != "unset"; }));
  timer.cancel();
  EXPECT_EQ(text, std::nullopt);
  EXPECT_GT(ticks, 20) << "the loop went on";
  EXPECT_THAT(lines, HasSubstr("does not answer"));

  ClipboardClient next{session.display(), loop};
  next.own({{"UTF8_STRING", "alive"}});
  EXPECT_EQ(read(), "alive");
}

TEST_F(X11PasteboardTest, anOwnerThatStopsInTheMiddleGivesNothing) {
  other.own({{"UTF8_STRING", longText(300'000)}}, 1000);
  other.stallAfterOnePiece();
  EXPECT_EQ(read(), std::nullopt);
}

}  // namespace
}  // namespace quillmark
