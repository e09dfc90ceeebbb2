#include <gmock/gmock.h>

#include "desktop/x11/X11Adapters.h"

namespace quillmark {
namespace {

using namespace std::chrono_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr KeyCombination controlOptionK{0x28, KeyCombination::control | KeyCombination::option};

struct X11HotKeysTest : X11Adapters {
  std::vector<std::string> fired;
  std::vector<std::string> refusals;
  Connection releases = hotKeys.released.connect([this](const std::string& name) { fired.push_back(name); });
  Connection refused = hotKeys.refused.connect([this](const std::string& name) { refusals.push_back(name); });
  xcb_window_t window = session.createWindow("Editor", 4711);
  xcb_keycode_t k = session.keyCode("k");

  X11HotKeysTest() {
    session.activate(window);
    session.keysPressedIn(window);
  }

  /// Handles all that has happened so far.
  void settle() { loop.runFor(30ms); }
};

TEST_F(X11HotKeysTest, firesOnceWithTheReleaseOfTheKeyWhateverBecameOfTheModifiers) {
  ASSERT_EQ(session.run({"xset", "r", "rate", "100", "50"}), 0);
  session.press(k);
  loop.runFor(300ms);
  session.release(k);
  EXPECT_GT(session.keysPressedIn(window).size(), 2u) << "keys of this server repeat while they are held";

  hotKeys.registerHotKey("menu", controlOptionK);
  session.press("Control_L");
  session.press("Alt_L");
  session.press(k);
  loop.runFor(300ms);
  EXPECT_THAT(fired, IsEmpty()) << "neither a press nor its repetition is a release";
  session.release("Alt_L");
  session.release("Control_L");
  settle();
  EXPECT_THAT(fired, IsEmpty());
  session.release(k);
  settle();
  EXPECT_THAT(fired, ElementsAre("menu"));

  for (int i = 0; i < 5; ++i) {
    session.tap({"Control_L", "Alt_L", "k"});  // press and release are handled together
    settle();
  }
  EXPECT_EQ(fired.size(), 6u);
  EXPECT_THAT(session.keysPressedIn(window), Not(Contains(k)));
}

TEST_F(X11HotKeysTest, lockKeysMakeNoDifference) {
  hotKeys.registerHotKey("menu", controlOptionK);
  for (const auto& locks : {std::vector<std::string_view>{"Caps_Lock"}, {"Num_Lock"}, {"Caps_Lock"}}) {
    session.tap(locks);  // caps; caps and num; num
    session.tap({"Control_L", "Alt_L", "k"});
    settle();
  }
  EXPECT_EQ(fired.size(), 3u);
}

TEST_F(X11HotKeysTest, aCombinationOfAnotherProgramIsReportedAndNothingOfItIsKept) {
  EXPECT_TRUE(hotKeys.isAvailable(controlOptionK));
  settle();  // so that the server has seen that asking keeps nothing
  xcb_grab_key(session.connection(), 0, session.root(), XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1 | XCB_MOD_MASK_2, k,
               XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);  // with Num Lock only
  session.keysPressedIn(window);
  EXPECT_FALSE(hotKeys.isAvailable(controlOptionK));
  EXPECT_FALSE(hotKeys.isAvailable({0x3F, KeyCombination::control})) << "no key is there";
  EXPECT_TRUE(hotKeys.isAvailable({0x28, KeyCombination::control}));
  hotKeys.registerHotKey("menu", controlOptionK);
  hotKeys.registerHotKey("nowhere", {0x3F, KeyCombination::control});
  EXPECT_THAT(refusals, ElementsAre("menu", "nowhere"));
  EXPECT_THAT(lines, HasSubstr("belongs to another program"));

  session.tap({"Control_L", "Alt_L", "k"});
  settle();
  EXPECT_THAT(fired, IsEmpty());
  EXPECT_THAT(session.keysPressedIn(window), Contains(k)) << "the combination is left to others";
}

TEST_F(X11HotKeysTest, namesComeAndGo) {
  hotKeys.registerHotKey("a", controlOptionK);
  hotKeys.registerHotKey("b", controlOptionK);
  hotKeys.registerHotKey("c", {0x60, 0});  // F5
  session.tap({"Control_L", "Alt_L", "k"});
  session.tap({"F5"});
  settle();
  EXPECT_THAT(fired, ElementsAre("a", "b", "c"));
  fired.clear();

  hotKeys.unregisterHotKey("a");
  hotKeys.registerHotKey("c", {0x60, KeyCombination::command});
  session.tap({"Control_L", "Alt_L", "k"});
  session.tap({"F5"});
  session.tap({"Super_L", "F5"});
  settle();
  EXPECT_THAT(fired, ElementsAre("b", "c"));
  fired.clear();

  hotKeys.unregisterHotKey("b");
  session.tap({"Control_L", "Alt_L", "k"});
  settle();
  EXPECT_THAT(fired, IsEmpty());
}

TEST_F(X11HotKeysTest, thePositionCountsAndKeysAreCalledWhatIsOnThem) {
  const std::pair<int, const char*> american[] = {{0x05, "G"},     {0x29, ";"},  {0x12, "1"},
                                                  {0x31, "Space"}, {0x60, "F5"}, {0x74, "Page Up"}};
  for (const auto& [key, label] : american) {
    EXPECT_EQ(hotKeys.keyLabel(key), label);
  }
  hotKeys.registerHotKey("a", {0x00, KeyCombination::control | KeyCombination::shift});
  session.setKeyboardLayout({"fr"});
  loop.runFor(100ms);
  EXPECT_EQ(hotKeys.keyLabel(0x29), "M");
  session.tap({"Control_L", "Shift_L", "q"});
  settle();
  EXPECT_THAT(fired, ElementsAre("a"));
}

struct X11HotKeysInUse : X11HotKeysTest, testing::WithParamInterface<bool> {
  X11HotKeysInUse() {
    if (GetParam()) {
      session.typeByTestExtension();
    }
    hotKeys.registerHotKey("menu", controlOptionK);
  }
};

TEST_P(X11HotKeysInUse, aSecondTapWhileTheModifiersStayDownIsTheHotKeyAgainAndNoLetter) {
  Connection copies = hotKeys.released.connect([this](const std::string&) { post(KeyCode::c); });
  session.press("Control_L");
  session.press("Alt_L");
  for (int taps = 1; taps <= 3; ++taps) {
    session.press(k);
    settle();
    session.release(k);
    settle();
    EXPECT_EQ(fired.size(), static_cast<std::size_t>(taps));
  }
  session.release("Alt_L");
  session.release("Control_L");
  settle();
  const auto keys = session.keysPressedIn(window);
  EXPECT_THAT(keys, Not(Contains(k)));
  EXPECT_EQ(std::ranges::count(keys, session.keyCode("c")), 3);

  session.tap({"k"});
  settle();
  EXPECT_EQ(fired.size(), 3u);
  EXPECT_THAT(session.keysPressedIn(window), ElementsAre(k)) << "with the modifiers up it is a letter again";
}

TEST_P(X11HotKeysInUse, simulatedKeysReachTheWindowWhileTheHotKeyIsStillDown) {
  session.press("Control_L");
  session.press("Alt_L");
  session.press(k);
  settle();
  post(KeyCode::v);
  settle();
  post(KeyCode::v);
  settle();
  session.release(k);
  session.release("Alt_L");
  session.release("Control_L");
  settle();
  const auto keys = session.keysPressedIn(window);
  EXPECT_EQ(std::ranges::count(keys, session.keyCode("v")), 2);
  EXPECT_THAT(keys, Not(Contains(k)));
  EXPECT_THAT(fired, ElementsAre("menu"));
}

TEST_P(X11HotKeysInUse, keysThatAreNoHotKeysWakeNobody) {
  session.tap({"Control_L", "Alt_L", "k"});
  settle();
  const int before = loop.wakeUps();
  session.type("plain text");
  loop.runFor(100ms);
  EXPECT_EQ(loop.wakeUps(), before);
}

INSTANTIATE_TEST_SUITE_P(Keyboards, X11HotKeysInUse, testing::Values(false, true),
                         [](const auto& test) { return test.param ? "simulated" : "real"; });

}  // namespace
}  // namespace quillmark
