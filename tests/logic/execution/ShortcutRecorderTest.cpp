#include <gmock/gmock.h>

#include "execution/ShortcutRecorder.h"
#include "platform/simulated/SimulatedDesktop.h"

namespace quillmark {
namespace {

constexpr int escape = 0x35;
constexpr int backspace = 0x33;
constexpr int forwardDelete = 0x75;
constexpr int f5 = 0x60;
constexpr int controlAlt = KeyCombination::control | KeyCombination::option;

struct Recorder : testing::Test {
  Recorder() {
    for (const char* name : {"fixGrammar", "translate"}) {
      shortcuts.onKeyUp(name, [this, name] { fired.emplace_back(name); });
    }
    shortcuts.onKeyUp("fixGrammar", [this] { fired.emplace_back("fixGrammar again"); });
    shortcuts.setShortcut("translate", KeyCombination{17, controlAlt});
  }

  void record(int key, int modifiers) {
    recorder.begin();
    recorder.keyPressed(static_cast<std::uint32_t>(key), modifiers);
    EXPECT_FALSE(recorder.isRecording());
    desktop.queue.settle();
  }
  std::optional<KeyCombination> stored() { return shortcuts.getShortcut("fixGrammar"); }
  std::string lastAlert() { return desktop.alerts.shown.empty() ? "" : desktop.alerts.shown.back().title; }

  SimulatedDesktop desktop;
  AlertHandler alertHandler{desktop.queue, desktop.alerts};
  GlobalShortcuts shortcuts{desktop.defaults, desktop.hotKeys};
  std::vector<std::string> fired;
  ShortcutRecorder recorder{{shortcuts, desktop.hotKeys, alertHandler,
                             [](const KeyCombination& combination) {
                               const bool isQuit = combination == KeyCombination{12, KeyCombination::control};
                               return isQuit ? std::optional<std::string>("Quit") : std::nullopt;
                             },
                             [](const std::string& name) { return "the command " + name; }},
                            "fixGrammar"};
};

TEST_F(Recorder, storesWhatIsPressedAndTheShortcutWorksAtOnce) {
  EXPECT_EQ(recorder.text(), "Record Shortcut");
  recorder.begin();
  EXPECT_EQ(recorder.text(), "Press Shortcut");
  recorder.keyPressed(5, controlAlt | KeyCombination::shift);
  EXPECT_EQ(recorder.text(), "Ctrl+Alt+Shift+key 5");
  desktop.hotKeys.press({5, controlAlt | KeyCombination::shift});
  EXPECT_THAT(fired, testing::ElementsAre("fixGrammar", "fixGrammar again"));
  record(f5, 0);
  EXPECT_EQ(stored(), (KeyCombination{f5, 0})) << "a function key needs no modifier";
  EXPECT_EQ(lastAlert(), "");
}

TEST_F(Recorder, letsNoShortcutFireWhileItWaits) {
  recorder.begin();
  EXPECT_TRUE(desktop.hotKeys.registered.empty());
  recorder.end();
  desktop.hotKeys.press({17, controlAlt});
  EXPECT_THAT(fired, testing::ElementsAre("translate"));
}

TEST_F(Recorder, endsWithEscapeAndClearsWithTheDeletingKeys) {
  for (const int key : {backspace, forwardDelete}) {
    record(5, controlAlt);
    record(escape, 0);
    EXPECT_EQ(stored(), (KeyCombination{5, controlAlt}));
    record(key, 0);
    EXPECT_EQ(stored(), std::nullopt);
    EXPECT_EQ(recorder.text(), "Record Shortcut");
  }
  record(escape, KeyCombination::control);
  EXPECT_EQ(stored(), (KeyCombination{escape, KeyCombination::control})) << "with a modifier they are keys like others";
  recorder.keyPressed(6, controlAlt);
  EXPECT_EQ(stored()->carbonKeyCode, escape) << "it waits for nothing now";
}

TEST_F(Recorder, refusesWhatOthersUseAndKeepsWhatItHad) {
  desktop.hotKeys.taken = {40};
  record(5, controlAlt);
  const std::pair<KeyCombination, const char*> refusals[] = {
      {{40, controlAlt}, "This keyboard shortcut can't be used because another program uses it."},
      {{12, KeyCombination::control}, "This keyboard shortcut can't be used because the menu item “Quit” uses it."},
      {{17, controlAlt}, "This keyboard shortcut can't be used because “the command translate” has it already."},
      {{7, 0}, "key 7"},
      {{7, KeyCombination::shift}, "Shift+key 7"},
  };
  for (const auto& [combination, message] : refusals) {
    record(combination.carbonKeyCode, combination.carbonModifiers);
    EXPECT_EQ(lastAlert(), message);
    EXPECT_EQ(stored(), (KeyCombination{5, controlAlt}));
    desktop.alerts.close();
  }
  record(5, controlAlt);
  EXPECT_EQ(desktop.alerts.shown.size(), std::size(refusals)) << "its own combination is not another's";
}

TEST_F(Recorder, followsAChangeFromElsewhere) {
  int changes = 0;
  const auto watch = recorder.changed.connect([&] { ++changes; });
  shortcuts.setShortcut("translate", std::nullopt);
  EXPECT_EQ(changes, 0);
  desktop.defaults.set("KeyboardShortcuts_fixGrammar", std::string(R"({"carbonKeyCode":9,"carbonModifiers":256})"));
  EXPECT_EQ(changes, 1);
  EXPECT_EQ(recorder.text(), "Super+key 9");
}

}  // namespace
}  // namespace quillmark
