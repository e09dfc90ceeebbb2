#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

#include "support/XSession.h"

namespace quillmark {
namespace {

std::string contents(const std::filesystem::path& file) {
  std::ifstream in(file);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

TEST(Session, keysOfTheKeyboardReachTheEditorInFront) {
  XSession session;
  const auto file = session.home() / "note.txt";
  std::ofstream(file) << "";
  auto editor = session.start({"mousepad", file});
  session.activate(session.waitForWindow(editor->pid()).id);
  session.type("hello");
  session.tap({"Control_L", "s"});
  EXPECT_TRUE(waitUntil([&] { return contents(file).starts_with("hello"); })) << contents(file);
}

}  // namespace
}  // namespace quillmark
