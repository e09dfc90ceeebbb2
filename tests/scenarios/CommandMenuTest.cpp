#include "Scenario.h"

namespace quillmark {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr KeyCombination hotKey{49, KeyCombination::control | KeyCombination::option};
constexpr const char* droppedRun = "Command menu was closed before its command ran";

enum Key { returnKey = 36, tab = 48, down = 125, up = 126 };

struct CommandMenu : Scenario {
  void open(InvocationSource source = InvocationSource::keyboardShortcut) {
    menu().togglePanel(source);
    ASSERT_TRUE(window.hasKeyboard);
  }
  CommandPanelViewModel& menu() { return app->commandPanel(); }
  CommandMenuState& view() { return menu().view(); }
  void type(const std::string& text) { menu().setSearchText(text); }
  void press(int key) { view().keyDown(key); }
  std::vector<std::string> rows() {
    std::vector<std::string> names;
    for (const Command* command : view().visibleCommands()) {
      names.push_back(command->displayName());
    }
    return names;
  }
  /// Nothing while no row is selected.
  std::optional<std::string> selected() {
    return view().selectedItem() ? std::optional(view().selectedItem()->displayName()) : std::nullopt;
  }
  /// No other commands, and none for languages and tones.
  void haveOnly(const std::vector<Command>& commands) {
    ASSERT_TRUE(app->promptStore().save([&](auto& list) { list = commands; }, std::nullopt));
  }
  static Command custom(const std::string& name, std::int64_t usageCount = 0) {
    Command command = Command::make(name, std::nullopt, "Do {{userText}}", std::nullopt, CommandCategory::customAction);
    command.usageCount = usageCount;
    return command;
  }
  bool isAsAtFirst() {
    return !menu().isCommandOpen() && !window.visible && menu().searchText()->empty() &&
           menu().currentMode() == CommandMenuMode::filter && !view().selectedIndex().get() && !selected() &&
           !services().activeApplicationTracker.commandTriggerTimestamp();
  }

  SimulatedWindow& window = desktop.menuWindow;
};

TEST_F(CommandMenu, runsWhatIsTypedOnTheSelectionOfAnotherApplication) {
  desktop.defaults.set(GlobalShortcuts::defaultsKey("commandMenu"),
                       toText({{"carbonKeyCode", hotKey.carbonKeyCode}, {"carbonModifiers", hotKey.carbonModifiers}}));
  desktop.defaults.set("commandMenu.position", std::string("nearMouse"));
  start();
  everyRequestIsAnswered("the cat");
  for (int i = 0; i < 2; ++i) {
    const auto editor = editorWith("teh cat");
    desktop.hotKeys.press(hotKey);
    EXPECT_TRUE(window.hasKeyboard);
    EXPECT_EQ(window.at, (Point{200, 320})) << "under the pointer";
    EXPECT_GT(rows().size(), 20u) << "with one row for each language and tone";
    EXPECT_EQ(selected(), rows().front());
    type("gRÄmmar");
    EXPECT_THAT(rows(), ElementsAre("Fix Grammar & Spelling"));
    press(returnKey);
    desktop.advance(99ms);
    EXPECT_TRUE(window.visible);
    desktop.advance(1ms);
    EXPECT_FALSE(window.visible);
    desktop.advance(1s);
    EXPECT_EQ(editor->text, "the cat");
    EXPECT_EQ(desktop.workspace.front, editor);
  }
  EXPECT_EQ(requests().size(), 2u);
  EXPECT_FALSE(logged(droppedRun));
}

TEST_F(CommandMenu, runsEachKindOfRow) {
  start();
  ASSERT_TRUE(app->promptStore().add(custom("Mine")));
  const struct {
    const char* search;
    const char* instruction;
  } cases[] = {{"mine", "Do "}, {"english", "the following text to en."}, {"to friendly", "to have a Friendly tone"}};
  for (const auto& [search, instruction] : cases) {
    editorWith("some text");
    open();
    type(search);
    ASSERT_EQ(rows().size(), 1u) << search;
    view().click(0);
    desktop.advance(1s);
    EXPECT_THAT(*request().request.body, HasSubstr(instruction));
    request().answerJson(answerJson("done"));
    desktop.advance(1s);
  }
  EXPECT_EQ(requests().size(), std::size(cases));
  EXPECT_TRUE(logged("trigger actions Mine"));
}

TEST_F(CommandMenu, takesTheTextFromThePasteboardWhereTheSourceHasPutIt) {
  start();
  everyRequestIsAnswered("answer");
  const std::pair<InvocationSource, const char*> cases[] = {
      {InvocationSource::keyboardShortcut, "selected"},
      {InvocationSource::menuBar, "selected"},
      {InvocationSource::urlHandler, "lies there"},
      {InvocationSource::serviceProvider, "lies there"},
  };
  for (const auto& [source, text] : cases) {
    editorWith("selected");
    desktop.pasteboard.put("Someone", "lies there");
    open(source);
    press(returnKey);
    desktop.advance(1s);
    EXPECT_EQ(parseJson(*request().request.body)["messages"][1]["content"], text) << rawValue(source);
  }
  // A task is always for the selection.
  desktop.pasteboard.put("Someone", "lies there");
  editorWith("selected");
  open(InvocationSource::urlHandler);
  press(tab);
  type("Make it rhyme");
  press(returnKey);
  desktop.advance(1s);
  EXPECT_TRUE(logged("handle action Free Style with selected text for review: \n selected"));
}

TEST_F(CommandMenu, switchesBetweenSearchAndTask) {
  start();
  open();
  type("trans");
  press(tab);
  EXPECT_EQ(menu().searchText().get(), "");
  EXPECT_THAT(rows(), IsEmpty());
  EXPECT_EQ(view().itemCount(), 1u);
  EXPECT_EQ(selected(), std::nullopt);
  press(returnKey);
  desktop.advance(1s);
  EXPECT_TRUE(window.visible) << "an empty task is none";
  type("x");
  press(tab);
  EXPECT_EQ(menu().searchText().get(), "");
  EXPECT_EQ(selected(), rows().front());
  haveOnly({});
  for (const int key : {up, down, returnKey}) {
    press(key);
  }
  EXPECT_EQ(view().itemCount(), 0u);
  EXPECT_TRUE(logged("No prompt selected"));
}

TEST_F(CommandMenu, isResetHoweverItCloses) {
  start();
  desktop.pasteboard.put("Someone", "text");
  const std::pair<const char*, std::function<void()>> ways[] = {
      {"toggle", [&] { menu().togglePanel(InvocationSource::menuBar); }},
      {"Escape", [&] { menu().cancel(); }},
      {"another window", [&] { window.loseKeyboard(); }},
      {"the window system", [&] { window.closedBySystem.emit(); }},
      {"two of them",
       [&] {
         window.loseKeyboard();
         window.closedBySystem.emit();
       }},
  };
  for (const auto& [name, close] : ways) {
    open();
    press(tab);
    type("a task");
    press(returnKey);
    desktop.advance(50ms);
    logLines.clear();
    close();
    EXPECT_TRUE(isAsAtFirst()) << name;
    std::erase(logLines, "Open command menu from source menuBar");
    EXPECT_THAT(logLines, ElementsAre(droppedRun, "Command trigger timestamp cleared")) << name;
    for (const int key : {down, tab, returnKey}) {
      press(key);
    }
    menu().cancel();
    EXPECT_TRUE(isAsAtFirst()) << "keys and Escape mean nothing to a closed menu";
    // The delay belongs to the menu that was closed, not to one that is open when it ends.
    open();
    desktop.advance(1s);
    EXPECT_TRUE(window.visible) << name;
    menu().cancel();
  }
  EXPECT_THAT(desktop.keyInjector.posted, IsEmpty());
}

TEST_F(CommandMenu, runsOnceHoweverOftenReturnIsPressed) {
  start();
  for (const bool isTask : {false, true}) {
    editorWith("teh cat");
    open();
    if (isTask) {
      press(tab);
      type("a task");
    }
    desktop.keyInjector.posted.clear();
    for (int i = 0; i < 3; ++i) {
      press(returnKey);
      desktop.advance(40ms);
    }
    EXPECT_FALSE(window.visible);
    everyRequestIsAnswered("the cat");
    desktop.advance(1s);
    EXPECT_EQ(std::ranges::count(logLines, "trigger command: Fix Grammar & Spelling"), 1);
    EXPECT_EQ(requests().size(), isTask ? 2u : 1u);
    EXPECT_EQ(request().request.body->find("a task") != std::string::npos, isTask);
    EXPECT_EQ(desktop.keyInjector.posted.size(), isTask ? 4u : 8u) << "copied once, pasted once";
    EXPECT_FALSE(window.visible);
  }
  menu().triggerCommand(commandOf(ActionCase::summarize));
  EXPECT_TRUE(logged("Command menu is not open"));
}

TEST_F(CommandMenu, givesTheFocusBackBeforeTheRun) {
  start();
  const auto editor = editorWith("teh cat");
  open();
  desktop.activateOwnWindow();
  press(returnKey);
  desktop.advance(100ms);
  EXPECT_EQ(desktop.workspace.front, editor);
  EXPECT_EQ(desktop.keyInjector.posted.size(), 4u);
  EXPECT_EQ(services().activeApplicationTracker.commandTriggerTimestamp(), desktop.queue.now())
      << "closing forgets the trigger, and the run marks its own moment";
}

TEST_F(CommandMenu, keepsTheStoresOrderAmongThoseUsedEqually) {
  start();
  Command off = custom("Off", 9);
  off.enabled = false;
  app->promptStore().searchableCommands.set({custom("One", 5), custom("Two", 5), off, custom("Three", 7)});
  open();
  EXPECT_THAT(rows(), ElementsAre("Three", "One", "Two"));
  type("O");
  EXPECT_THAT(rows(), ElementsAre("One", "Two")) << "a search does not reorder";
  menu().cancel();
  EXPECT_TRUE(isAsAtFirst());
  app->promptStore().searchableCommands.mutate([](auto& list) { list[1].usageCount = 8; });
  open();
  EXPECT_THAT(rows(), ElementsAre("Two", "Three", "One"));
}

TEST_F(CommandMenu, findsByTheStoredNameAndByTheTitleShown) {
  start();
  Command renamed = Command::make(UserAction(ActionCase::summarize));
  renamed.name = "Résumer";
  haveOnly({renamed, custom("Other")});
  open();
  for (const char* part : {"RESUM", "summ"}) {
    type(part);
    EXPECT_THAT(rows(), ElementsAre("Summarize")) << part;
  }
}

TEST_F(CommandMenu, selectsByArrowsUntilTheMouseEntersARow) {
  start();
  haveOnly({custom("One"), custom("Two"), custom("Three")});
  open();
  EXPECT_EQ(selected(), "One");
  press(up);
  EXPECT_EQ(selected(), "Three");
  EXPECT_TRUE(view().isSelected(*view().visibleCommands()[2]));
  view().hover(1);
  EXPECT_EQ(selected(), std::nullopt);
  EXPECT_EQ(view().hoveredIndex().get(), 1u);
  EXPECT_EQ(view().commandOfReturn()->displayName(), "Two") << "Return runs what is lit";
  view().hover({});
  press(returnKey);
  EXPECT_TRUE(logged("No prompt selected"));
  view().hover(1);
  press(up);
  EXPECT_EQ(selected(), "One") << "the first arrow, whichever it is, selects the first row";
  view().hover(1);
  EXPECT_EQ(selected(), "One") << "the mouse has only moved inside its row";
  view().hover({});
  EXPECT_EQ(selected(), "One");
  type("nothing like it");
  EXPECT_EQ(selected(), std::nullopt);
  type("");
  EXPECT_EQ(selected(), "One");
  view().click(1);
  EXPECT_TRUE(logged("trigger command: Two"));
  menu().cancel();
  open();
  view().hover(2);
  press(returnKey);
  EXPECT_TRUE(logged("trigger command: Three"));
}

TEST_F(CommandMenu, keepsItsSelectionWhenTheListChangesUnderIt) {
  start();
  open();
  type("tone");
  press(down);
  const auto tone = selected();
  ASSERT_NE(tone, std::nullopt);
  int changes = 0;
  const auto connection = view().visibleCommandsChanged.connect([&] { ++changes; });
  ASSERT_TRUE(app->promptStore().add(custom("Another tone", 9)));
  EXPECT_EQ(changes, 1);
  EXPECT_EQ(view().selectedIndex().get(), 2u);
  EXPECT_EQ(selected(), tone);
  haveOnly({custom("Tone")});
  EXPECT_EQ(selected(), "Tone") << "the one that was selected is gone";
}

}  // namespace
}  // namespace quillmark
