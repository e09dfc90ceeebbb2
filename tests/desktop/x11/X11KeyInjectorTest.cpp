#include "desktop/x11/X11Adapters.h"

namespace quillmark {
namespace {

using namespace std::chrono_literals;

struct Layout {
  const char* name;
  std::vector<std::string> arguments;
  int group = 0;
};

struct X11KeyInjectorTest : X11Adapters {
  std::filesystem::path file = session.home() / "note.txt";
  std::unique_ptr<Process> editor;

  void open(const std::string& program, const std::string& text) {
    writeFile(file, text);
    editor = session.start({program, file});
    session.activate(session.waitForWindow(editor->pid()).id);
    // It is ready when it takes keys: select all and copy until something arrives.
    ASSERT_TRUE(waitUntil([&] {
      session.tap({"Control_L", "a"});
      return copyFromWindowInFront(300ms).has_value();
    })) << program;
  }
};

struct X11KeyInjectorLayouts : X11KeyInjectorTest, testing::WithParamInterface<std::tuple<const char*, Layout>> {};

TEST_P(X11KeyInjectorLayouts, copiesAndPastesWhateverTheLayout) {
  const auto& [program, layout] = GetParam();
  open(program, "teh cat");
  session.tap({"Control_L", "a"});
  // The editor has taken that key: read by the next layout it may be another one, such as Control+Q.
  ASSERT_TRUE(copyFromWindowInFront());
  session.setKeyboardLayout(layout.arguments);
  session.lockGroup(layout.group);
  loop.runFor(50ms);

  const auto text = copyFromWindowInFront();
  ASSERT_TRUE(text) << "nothing was copied";
  EXPECT_TRUE(text->starts_with("teh cat")) << *text;
  EXPECT_EQ(session.lockedGroup(), layout.group);

  pasteboard.setString("the cat");
  post(KeyCode::v);
  loop.runFor(200ms);
  session.setKeyboardLayout({"us"});
  session.lockGroup(0);
  session.tap({"Control_L", "s"});
  EXPECT_TRUE(loop.runUntil([&] { return readFile(file).starts_with("the cat"); }, 10s)) << readFile(file);
}

INSTANTIATE_TEST_SUITE_P(
    Editors, X11KeyInjectorLayouts,
    testing::Combine(testing::Values("mousepad", "featherpad"),
                     testing::Values(Layout{"us", {"us"}}, Layout{"fr", {"fr"}}, Layout{"dvorak", {"us", "dvorak"}},
                                     Layout{"us_ru", {"us,ru"}, 1}, Layout{"ru", {"ru"}})),
    [](const auto& test) { return std::string(std::get<0>(test.param)) + "_" + std::get<1>(test.param).name; });

struct X11KeyInjectorHeld : X11KeyInjectorTest, testing::WithParamInterface<const char*> {};

TEST_P(X11KeyInjectorHeld, modifiersThatTheUserStillHoldsDoNotCountAndAreNotLeftStuck) {
  open(GetParam(), "teh cat");
  for (const auto& held : {std::vector<std::string_view>{"Control_L", "Alt_L"}, {"Super_L"}, {"Shift_L", "Alt_L"}}) {
    session.tap({"Control_L", "a"});
    for (const auto name : held) {
      session.press(name);
    }
    const auto text = copyFromWindowInFront();
    EXPECT_TRUE(text && text->starts_with("teh cat")) << text.value_or("nothing");
    loop.runFor(300ms);
    for (const auto name : held) {
      session.release(name);
      EXPECT_FALSE(session.isPressed(session.keyCode(name))) << name;
    }
    session.tap({"Escape"});  // a menu that Alt alone may have opened
  }
}

INSTANTIATE_TEST_SUITE_P(Editors, X11KeyInjectorHeld, testing::Values("mousepad", "featherpad"),
                         [](const auto& test) { return std::string(test.param); });

TEST_F(X11KeyInjectorTest, nothingIsTypedIntoATerminalThatHasNoKeysForTheClipboard) {
  const auto record = session.home() / "record";
  auto terminal =
      session.start({"xterm", "-e", "sh", "-c", "echo ready > " + record.string() + "; cat >> " + record.string()});
  session.activate(session.waitForWindow(terminal->pid()).id);
  ASSERT_TRUE(loop.runUntil([&] { return readFile(record) == "ready\n"; }));
  post(KeyCode::c);
  post(KeyCode::v);
  session.type("end\n");
  EXPECT_TRUE(loop.runUntil([&] { return readFile(record) == "ready\nend\n"; }, 5s)) << readFile(record);
}

}  // namespace
}  // namespace quillmark
