#include <QCoreApplication>

#include <gtest/gtest.h>

#include "base/Log.h"
#include "panels/review/views/TypewriterText.h"
#include "platform/simulated/SimulatedDesktop.h"
#include "shell/QuillmarkApp.h"

namespace quillmark {
namespace {

std::string lines(int count, const char* start) {
  std::string text;
  for (int i = 0; i < count; ++i) {
    text += start + std::to_string(i) + "\n";
  }
  return text;
}

TEST(TypewriterText, drawsMuchTextInPartsWithoutLosingAny) {
  setLogSink([](std::string_view) {});
  SimulatedDesktop desktop;
  QuillmarkApp app(desktop.platform(), {nullptr, desktop.reviewWindow, desktop.menuWindow}, {});
  auto& session = app.reviewPanel();
  TypewriterText text(session);
  std::string longLine(50'000, 'x');
  longLine += " y";
  const std::string pieces[] = {"The beginning of ", lines(3000, "- **point** "), longLine, " of the same line\n",
                                lines(2000, "")};
  for (const bool styled : {false, true}) {
    session.text.set("");
    text.setStyled(styled);
    int rounds = 0;
    for (const auto& piece : pieces) {
      session.text.append(piece);
      QCoreApplication::sendPostedEvents();  // the next piece comes before all of this one is drawn
      ++rounds;
    }
    TypewriterText whole(session);
    whole.setStyled(styled);
    EXPECT_LT(text.allText().size(), whole.allText().size()) << "not everything at once";
    for (; text.allText() != whole.allText() && rounds < 20; ++rounds) {
      QCoreApplication::sendPostedEvents();
    }
    EXPECT_TRUE(text.allText() == whole.allText()) << "too long to be shown";
    session.text.set("another one");
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(text.allText(), "another one");
  }
  setLogSink({});
}

}  // namespace
}  // namespace quillmark
