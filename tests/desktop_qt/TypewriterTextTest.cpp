#include <QCoreApplication>
#include <QScrollBar>
#include <random>

#include <gtest/gtest.h>

#include "panels/review/views/ReviewBlocks.h"
#include "panels/review/views/TypewriterText.h"
#include "widgets/Look.h"

namespace quillmark {
namespace {

struct Typewriter : testing::Test {
  static void draw() { QCoreApplication::sendPostedEvents(); }
  /// What it would be if the text had arrived at once.
  std::unique_ptr<TypewriterText> whole(bool styled) {
    auto whole = std::make_unique<TypewriterText>(text, isStreaming);
    whole->setStyled(styled);
    whole->resize(view.size());
    whole->show();
    return whole;
  }
  void append(int lines, const char* start) {
    std::string piece;
    for (int i = 0; i < lines; ++i) {
      piece += start + std::to_string(i) + "\n";
    }
    text.append(piece);
    draw();
  }

  ResultText text;
  Observable<bool> isStreaming{true};
  TypewriterText view{text, isStreaming};
};

TEST_F(Typewriter, drawsAStreamAsItWouldBeAtOnce) {
  view.resize(500, 300);
  view.show();
  std::mt19937 random(5);
  const std::vector<std::string> pieces{
      "# Title", "\n",    "\r\n", "a **bold** word ", "- item", "`code`", "1. one", "> said",
      "---",     "سلام ", "\n\n", "plain ",           "*",      "[a](b)"};
  for (const bool styled : {false, true}) {
    view.setStyled(styled);
    for (int round = 0; round < 30; ++round) {
      text.set("");
      for (int i = 0; i < 20; ++i) {
        text.append(pieces[random() % pieces.size()]);
        if (random() % 2 == 0) {
          draw();
        }
      }
      if (round % 2 == 0) {  // the final answer differs from the stream
        std::string answer = text.get();
        answer.replace(answer.rfind(' ') + 1, std::string::npos, "\n- the end");
        text.set(answer);
      }
      draw();
      EXPECT_EQ(view.allText(), whole(styled)->allText());
      EXPECT_EQ(view.textSize(), whole(styled)->textSize());
    }
  }
}

TEST_F(Typewriter, drawsMuchTextInPartsWithoutLosingAny) {
  std::string longLine(50'000, 'x');
  longLine += " y";
  for (const bool styled : {false, true}) {
    text.set("");
    view.setStyled(styled);
    // Each piece arrives before the previous one is fully drawn.
    text.append("The beginning of ");
    draw();
    append(3000, "- **point** ");
    text.append(longLine);
    draw();
    append(2000, " of the same line");
    EXPECT_LT(view.allText().size(), whole(styled)->allText().size()) << "not everything at once";
    for (int round = 0; view.allText() != whole(styled)->allText() && round < 20; ++round) {
      draw();
    }
    EXPECT_TRUE(view.allText() == whole(styled)->allText()) << "too long to be shown";
    text.set("another one");
    draw();
    EXPECT_EQ(view.allText(), "another one");
  }
}

TEST_F(Typewriter, followsTheEndOfATextOnlyWhileTheUserIsThere) {
  view.resize(500, 300);
  view.show();
  auto& bar = *view.verticalScrollBar();
  append(60, "line");
  EXPECT_GT(bar.maximum(), 0);
  EXPECT_EQ(bar.value(), bar.maximum());
  bar.setValue(40);
  append(60, "line");
  EXPECT_EQ(bar.value(), 40);
}

TEST(ReviewBlocks, setEachKindOfLineApart) {
  MarkdownText text;
  text.setText("# one\n## two\n### three\ntext\n- item\n> said");
  const QPalette palette = look::palette(look::Scheme::light);
  const auto lines = blocks::markdown(text.lines(), 0, palette);
  const struct {
    double size;
    QFont::Weight weight;
    double above, below;
  } expected[] = {{24, QFont::Bold, 8, 4},   {19, QFont::Bold, 6, 3},   {16, QFont::Bold, 4, 2},
                  {14, QFont::Normal, 1, 1}, {14, QFont::Normal, 1, 1}, {14, QFont::Normal, 0, 0}};
  ASSERT_EQ(lines.size(), std::size(expected));
  for (std::size_t i = 0; i < lines.size(); ++i) {
    EXPECT_EQ(lines[i].font, look::font(expected[i].size, expected[i].weight)) << i;
    EXPECT_EQ(lines[i].above, expected[i].above) << i;
    EXPECT_EQ(lines[i].below, expected[i].below) << i;
    EXPECT_EQ(lines[i].colour, i == 5 ? look::secondary(palette) : palette.color(QPalette::WindowText)) << i;
  }
}

}  // namespace
}  // namespace quillmark
