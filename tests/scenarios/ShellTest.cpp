#include "Scenario.h"

namespace quillmark {
namespace {

using testing::Contains;
using testing::ElementsAre;

constexpr KeyCombination controlAltG{5, KeyCombination::control | KeyCombination::option};

struct Shortcuts : Scenario {
  std::vector<std::string> registered() {
    std::vector<std::string> names;
    for (const auto& [name, combination] : desktop.hotKeys.registered) {
      names.push_back(name);
    }
    return names;
  }
};

TEST_F(Shortcuts, takeEffectWhenTheyAreStoredChangedOrRemoved) {
  start();
  EXPECT_THAT(registered(), ElementsAre());
  storeShortcut("translate", controlAltG);
  EXPECT_EQ(desktop.hotKeys.registered["translate"], controlAltG);
  storeShortcut("translate", {6, KeyCombination::command});
  EXPECT_EQ(desktop.hotKeys.registered["translate"].carbonKeyCode, 6);
  storeShortcut("somethingElse", controlAltG);
  desktop.defaults.set(GlobalShortcuts::defaultsKey("translate"), std::string("not json"));
  EXPECT_THAT(registered(), ElementsAre());
}

TEST_F(Shortcuts, areRegisteredAgainWhenTheNumberOfCommandsChanges) {
  start();
  Command mine = Command::make("Mine", std::nullopt, "x", std::nullopt, CommandCategory::writing);
  storeShortcut(mine.shortcutName(), controlAltG);
  EXPECT_THAT(registered(), ElementsAre()) << "no command has this name yet";
  ASSERT_TRUE(app->promptStore().add(mine));
  EXPECT_THAT(registered(), ElementsAre(mine.id.toString()));
  ASSERT_TRUE(app->promptStore().save([&](auto& list) { std::erase(list, mine); }, std::nullopt));
  EXPECT_THAT(registered(), ElementsAre());
}

TEST_F(Shortcuts, runTheCommandAsItIsNowEvenADisabledOne) {
  storeShortcut("fixGrammar", controlAltG);
  start();
  logLines.clear();
  Command grammar = *app->promptStore().commandFor(ActionCase::fixGrammar);
  grammar.enabled = false;
  grammar.content = "Shout: {{userText}}";
  ASSERT_TRUE(app->promptStore().update(grammar));
  EXPECT_THAT(logLines, testing::Not(Contains(testing::HasSubstr("Subscribe to keyboard shortcuts"))))
      << "the number of commands is what it was";
  editorWith("teh cat");
  desktop.hotKeys.press(controlAltG);
  desktop.advance(1s);
  ASSERT_EQ(desktop.http.exchanges.size(), 1u);
  EXPECT_THAT(*request().request.body, testing::HasSubstr("Shout: "));
}

TEST_F(Shortcuts, thatAnotherProgramHasAreReportedOnce) {
  desktop.hotKeys.taken = {5};
  storeShortcut("fixGrammar", controlAltG);
  start();
  storeShortcut("fixGrammar", {5, KeyCombination::command});
  desktop.queue.settle();
  ASSERT_EQ(desktop.alerts.shown.size(), 1u);
  EXPECT_EQ(desktop.alerts.shown[0].title, "Shortcut Not Available");
  EXPECT_THAT(desktop.alerts.shown[0].message, testing::HasSubstr("Fix Grammar & Spelling"));
}

TEST_F(Shortcuts, areRecordedUnlessTheMenuOrAnotherCommandHasThem) {
  storeShortcut("fixGrammar", controlAltG);
  desktop.hotKeys.labels = {{12, "Q"}};
  start();
  ShortcutRecorder recorder(services().shortcutRecording, "commandMenu");
  const auto record = [&](const KeyCombination& combination) {
    recorder.begin();
    recorder.keyPressed(static_cast<std::uint32_t>(combination.carbonKeyCode), combination.carbonModifiers);
    return closeAlert();
  };
  EXPECT_THAT(record({12, KeyCombination::control}), testing::HasSubstr("the menu item “Quit”"));
  EXPECT_THAT(record(controlAltG), testing::HasSubstr("“Fix Grammar & Spelling” has it"));
  EXPECT_EQ(record({40, KeyCombination::control}), "");
  desktop.hotKeys.press({40, KeyCombination::control});
  EXPECT_TRUE(logged("Open command menu from source keyboardShortcut"));
}

TEST_F(Shortcuts, ofTranslateAndChangeToneRunOnceWithTheFirstLanguageOrTone) {
  desktop.defaults.set("defaultBehavior", std::string("showReview"));  // which a run in progress does not prevent
  const std::pair<const char*, const char*> cases[] = {{"translate", "following text to en."},
                                                       {"changeTone", "to have a Professional tone"}};
  for (const auto& [name, instruction] : cases) {
    desktop.defaults.remove(GlobalShortcuts::defaultsKey("translate"));
    storeShortcut(name, controlAltG);
    start();
    const auto before = requests().size();
    editorWith("cat");
    desktop.hotKeys.press(controlAltG);
    desktop.advance(1s);
    ASSERT_EQ(requests().size(), before + 1) << name;
    EXPECT_THAT(*request().request.body, testing::HasSubstr(instruction));
  }
}

TEST_F(Scenario, aTextFromAnotherProgramOpensTheCommandMenu) {
  start();
  const std::string opening = "Open command menu from source serviceProvider";
  for (const auto& nothing : {std::optional<std::string>(""), std::optional<std::string>()}) {
    app->serviceProvider().service(nothing);
    EXPECT_EQ(closeAlert(), "Unknown Error: Could not find the text for parsing.");
  }
  app->serviceProvider().service("a text");
  EXPECT_FALSE(logged(opening)) << "the sender is answered first";
  desktop.queue.settle();
  EXPECT_TRUE(logged(opening));
}

TEST_F(Scenario, aStartKnowsItsVersionBeforeAnyStoreLoadsAndForgetsARunThatDidNotEnd) {
  desktop.defaults.set("appVersion", std::string("1.0.0"));
  desktop.defaults.set("main.isLoading", true);
  std::string atLoad;
  const auto watch = desktop.defaults.changed.connect([&](const std::string& key) {
    if (key == CustomPromptStore::userDefaultsKey) {
      atLoad = *desktop.defaults.get<std::string>("appVersion");
    }
  });
  start();
  EXPECT_EQ(atLoad, "2.13.0");
  EXPECT_EQ(desktop.defaults.get<bool>("main.isLoading"), false);
}

struct TrayMenu : Scenario {
  static std::vector<std::string> titles(const std::vector<MenuItem>& items) {
    std::vector<std::string> result;
    for (const auto& item : items) {
      result.push_back(item.kind == MenuItem::Kind::divider ? "-" : item.title);
    }
    return result;
  }
  static MenuItem item(const std::vector<MenuItem>& items, const std::string& title) {
    return *std::ranges::find(items, title, &MenuItem::title);
  }
};

TEST_F(TrayMenu, hasItsRowsInOrder) {
  start();
  EXPECT_THAT(titles(app->menuBar().items()),
              ElementsAre("Fix Grammar & Spelling", "Improve Text", "Simplify Language", "Make Text Longer",
                          "Make Text Shorter", "Summarize", "Explain This", "Change tone", "Translate", "-",
                          "Custom Action", "Prompting", "-", "Settings", "Help Center", "Check for Updates…", "Quit"));
  const auto keepTwo = [](auto& list) {
    for (auto& command : list) {
      command.enabled = command.type.kind == ActionCase::summarize || command.type.kind == ActionCase::improvePrompt;
    }
  };
  ASSERT_TRUE(app->promptStore().save(keepTwo, std::nullopt));
  EXPECT_THAT(titles(app->menuBar().items()),
              ElementsAre("Summarize", "-", "Prompting", "-", "Settings", "Help Center", "Check for Updates…", "Quit"));

  std::vector<Command> oneOfEach;
  for (const auto category : allCases<CommandCategory>()) {
    oneOfEach.insert(oneOfEach.begin(), Command::make(title(category), std::nullopt, "", std::nullopt, category));
  }
  ASSERT_TRUE(app->promptStore().save([&](auto& list) { list = oneOfEach; }, std::nullopt));
  std::vector<std::string> groups;
  for (const auto& item : app->menuBar().items()) {
    if (item.kind == MenuItem::Kind::submenu) {
      groups.push_back(item.title + ": " + item.symbol + ", " + item.children.at(0).symbol);
    }
  }
  EXPECT_THAT(groups,
              ElementsAre("Rewrite: lasso.badge.sparkles, lasso.badge.sparkles", "Writing: pencil.line, pencil.line",
                          "SEO & Copywriting: rectangle.and.text.magnifyingglass, "
                          "rectangle.and.text.magnifyingglass",
                          "Development: hammer.circle, hammer.circle", "Custom Action: command, command",
                          "Prompting: command, command"));
  std::vector<std::string> stored;
  std::ranges::transform(app->promptStore().prompts.get(), std::back_inserter(stored), &Command::name);
  EXPECT_THAT(stored, ElementsAre("Main Action", "Writing", "Rewrite", "SEO & Copywriting", "Development", "Prompting",
                                  "Custom Action"));
}

TEST_F(TrayMenu, runsWhatIsChosen) {
  start();
  everyRequestIsAnswered("answer");
  const auto editor = editorWith("text");
  item(item(app->menuBar().items(), "Change tone").children, "Witty").trigger();
  desktop.advance(1s);
  EXPECT_EQ(editor->text, "answer");
  EXPECT_THAT(*request().request.body, testing::HasSubstr("to have a Witty tone"));
}

TEST_F(TrayMenu, showsARunAndOffersNothingThatRunsMeanwhile) {
  start();
  int changes = 0;
  const auto watch = app->menuBar().changed.connect([&] { ++changes; });
  editorWith("text");
  run(ActionCase::summarize);
  EXPECT_GE(changes, 1);
  const auto items = app->menuBar().items();
  EXPECT_EQ(items[0].kind, MenuItem::Kind::progress);
  EXPECT_EQ(items[0].title, "Processing request...");
  for (const char* title : {"Summarize", "Translate", "Prompting"}) {
    EXPECT_FALSE(item(items, title).enabled) << title;
  }
  for (const char* title : {"Settings", "Help Center", "Quit"}) {
    EXPECT_TRUE(item(items, title).enabled) << title;
  }
}

TEST_F(Scenario, theLoginSwitchRegistersAgainWhatIsRegisteredAndLogsAFailure) {
  auto& launch = start().services().launchAtLogin;
  const auto& calls = desktop.loginItem.calls;
  int announced = 0;
  const auto watch = launch.willChange.connect([&] { announced += calls.empty() ? 1 : 0; });
  launch.setEnabled(true);
  EXPECT_EQ(announced, 1) << "told before anything is done";
  EXPECT_EQ(calls, std::vector<std::string>{"register"});
  launch.setEnabled(true);
  launch.setEnabled(false);
  EXPECT_EQ(calls, (std::vector<std::string>{"register", "unregister", "register", "unregister"}));
  EXPECT_FALSE(launch.isEnabled());

  desktop.loginItem.fails = true;
  launch.setEnabled(true);
  launch.setEnabled(false);
  EXPECT_TRUE(logged("Failed to enable launch at login: no such directory"));
  EXPECT_TRUE(logged("Failed to disable launch at login: no such directory"));
}

TEST_F(Scenario, theIndicatorTrailsThePointerTwentyTimesASecondAndThenRests) {
  start();
  editorWith("text");
  desktop.screens.mouse = Point{100, 100};
  run(ActionCase::summarize);
  desktop.queue.settle();
  EXPECT_EQ(loading.at, (Point{125, 105}));
  desktop.screens.mouse = Point{300, 200};
  desktop.advance(49ms);
  EXPECT_EQ(loading.at, (Point{125, 105}));
  desktop.advance(1ms);
  EXPECT_EQ(loading.at, (Point{325, 205}));
  desktop.advance(1s);
  request().fail("gone");
  desktop.queue.settle();
  desktop.alerts.close();
  desktop.advance(3s);  // and the counts are sent
  EXPECT_FALSE(desktop.queue.nextDue().has_value()) << "an idle program sleeps";
}

TEST_F(TrayMenu, staysAsItWasWhenAChangeCouldNotBeStored) {
  start();
  everyRequestIsAnswered("answer");
  const auto rows = titles(app->menuBar().items());
  desktop.defaults.diskIsFull = true;
  for (int i = 1; i <= 2; ++i) {
    EXPECT_FALSE(app->promptStore().add(std::nullopt));
    EXPECT_FALSE(services().languageStore.setEnabled("de", false)) << "is told with the one before";
    desktop.advance(1s);
    ASSERT_EQ(desktop.alerts.open.size(), 1u);
    EXPECT_EQ(desktop.alerts.open.front().title, "Change Not Stored");
    EXPECT_THAT(desktop.alerts.open.front().message, testing::HasSubstr("the disk is full"));
    EXPECT_THAT(titles(app->menuBar().items()), testing::ElementsAreArray(rows));
    desktop.alerts.close();
    EXPECT_EQ(desktop.alerts.shown.size(), static_cast<std::size_t>(i));
  }
  const auto editor = editorWith("text");
  run(ActionCase::summarize);
  desktop.advance(1s);
  EXPECT_EQ(editor->text, "answer") << "counting is no reason to stop";
  EXPECT_TRUE(desktop.alerts.open.empty());
}

}  // namespace
}  // namespace quillmark
