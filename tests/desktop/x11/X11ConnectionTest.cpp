#include "desktop/x11/X11Adapters.h"

namespace quillmark {
namespace {

using namespace std::chrono_literals;

using X11ConnectionTest = X11Adapters;

TEST_F(X11ConnectionTest, aServerThatGoesAwayIsSurvived) {
  session.endServer();
  ASSERT_TRUE(loop.runUntil([&] { return lines.find("connection to the server is lost") != std::string::npos; }));
  const int before = loop.wakeUps();
  loop.runFor(50ms);
  EXPECT_LE(loop.wakeUps(), before + 1) << "a dead connection must not keep the loop awake";

  pasteboard.setString("text");
  EXPECT_EQ(read(), std::nullopt);
  EXPECT_EQ(injector.createKeyboardEvent(KeyCode::c, true), std::nullopt);
  hotKeys.registerHotKey("name", {0x00, KeyCombination::control});
}

}  // namespace
}  // namespace quillmark
