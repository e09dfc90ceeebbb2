#include "Scenario.h"

namespace quillmark {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

struct DirectRun : Scenario {};

TEST_F(DirectRun, rewritesTheSelectionOfAnotherApplication) {
  start();
  const auto editor = editorWith("teh cat");
  run(ActionCase::fixGrammar);
  const auto key = [](KeyCode code, bool down) { return KeyboardEvent{code, down, commandFlag}; };
  EXPECT_THAT(desktop.keyInjector.posted, ElementsAre(key(KeyCode::commandModifier, true), key(KeyCode::c, true),
                                                      key(KeyCode::commandModifier, false), key(KeyCode::c, false)));
  desktop.queue.settle();
  EXPECT_TRUE(loading.visible);
  desktop.advance(100ms);
  request().answerJson(answerJson("the cat"));
  desktop.advance(150ms);
  EXPECT_EQ(editor->text, "the cat");
  EXPECT_EQ(desktop.workspace.front, editor);
  EXPECT_FALSE(loading.visible);
  EXPECT_FALSE(services().actionService.isLoading.get());
  EXPECT_EQ(desktop.pasteboard.text, "the cat") << "nothing puts the old contents back";

  const Json body = parseJson(*request().request.body);
  EXPECT_EQ(body["messages"][1]["content"], "teh cat");
  EXPECT_THAT(body["messages"][0]["content"].get<std::string>(), HasSubstr("expert grammar checker"));

  desktop.keyInjector.posted.clear();
  desktop.keyInjector.refuses = [](KeyCode code, bool down) { return code == KeyCode::commandModifier && !down; };
  run(ActionCase::fixGrammar);
  EXPECT_EQ(desktop.keyInjector.posted.size(), 3u) << "an event that can't be made is left out";
}

TEST_F(DirectRun, withoutPermissionChangesNothing) {
  start();
  desktop.pasteboard.put("Editor", "earlier");
  desktop.permissions.permission = Permission::denied;
  for (const auto behavior : {ActionBehavior::replaceSelection, ActionBehavior::showReview}) {
    run(ActionCase::fixGrammar, behavior);
    EXPECT_THAT(closeAlert(), HasSubstr("Accessibility Access Required: "));
  }
  EXPECT_TRUE(desktop.keyInjector.posted.empty());
  EXPECT_EQ(desktop.pasteboard.text, "earlier");
  EXPECT_FALSE(loading.visible);
  EXPECT_FALSE(services().activeApplicationTracker.commandTriggerTimestamp().has_value());
}

TEST_F(DirectRun, readsThePasteboardAsItIsWhenToldNotToCopy) {
  start();
  desktop.pasteboard.put("Someone", " \n");
  services().actionService.runCommand(commandOf(ActionCase::fixGrammar), false);
  desktop.advance(1s);
  EXPECT_TRUE(desktop.keyInjector.posted.empty());
  ASSERT_EQ(requests().size(), 1u) << "blanks are a text";
  EXPECT_EQ(parseJson(*request().request.body)["messages"][1]["content"], " \n");
}

TEST_F(DirectRun, appliesEachBehaviourExactly) {
  const struct {
    ActionBehavior behavior;
    std::string editorText;
    std::string pasteboardText;
  } cases[] = {
      {ActionBehavior::replaceSelection, "ANSWER \n", "ANSWER \n"},
      {ActionBehavior::insertAfterSelection, " sel \n\n\nANSWER \n", " sel \n\n\nANSWER \n"},
      {ActionBehavior::insertBeforeSelection, "ANSWER \n\n\n sel \n", "ANSWER \n\n\n sel \n"},
      {ActionBehavior::copyToClipboard, " sel \n", "ANSWER \n"},
  };
  start();
  everyRequestIsAnswered("ANSWER \n");
  for (const bool byDefault : {false, true}) {
    for (const auto& [behavior, editorText, pasteboardText] : cases) {
      const auto editor = editorWith(" sel \n");
      services().activeApplicationTracker.clearCommandTrigger();  // a copy run keeps its mark
      services().actionService.defaultBehavior.set(byDefault ? behavior : ActionBehavior::showReview);
      run(ActionCase::improveWriting, byDefault ? std::nullopt : std::optional(behavior));
      desktop.advance(50ms);
      const auto other = desktop.openEditor("Other", "");
      desktop.advance(1s);
      EXPECT_EQ(editor->text, editorText) << rawValue(behavior);
      EXPECT_EQ(desktop.pasteboard.text, pasteboardText) << rawValue(behavior);
      EXPECT_EQ(desktop.workspace.front, pastes(behavior) ? editor : other) << "a copy leaves the focus where it is";
    }
  }
}

TEST_F(DirectRun, dropsASecondTriggerWhileOneIsInProgress) {
  start();
  const auto editor = editorWith("teh cat");
  run(ActionCase::fixGrammar);
  desktop.advance(50ms);
  run(ActionCase::summarize);
  run(ActionCase::summarize, ActionBehavior::showReview);
  desktop.advance(1s);
  ASSERT_EQ(desktop.http.exchanges.size(), 1u);
  EXPECT_EQ(desktop.keyInjector.posted.size(), 4u);
  request().answerJson(answerJson("the cat"));
  desktop.advance(1s);
  EXPECT_EQ(editor->text, "the cat");
  editor->selectAll();
  run(ActionCase::summarize);
  desktop.advance(1s);
  EXPECT_EQ(desktop.http.exchanges.size(), 2u) << "once idle again, the next trigger counts";
}

TEST_F(DirectRun, endsQuietlyOnAnEmptySelection) {
  const struct {
    const char* name;
    std::function<void(SimulatedApplication&)> prepare;
  } cases[] = {
      {"nothing selected", [](auto& editor) { editor.selection.length = 0; }},
      {"a picture selected", [](auto& editor) { editor.copiesPicture = true; }},
      {"an application slower than the copy may take", [](auto& editor) { editor.latency = 150ms; }},
      {"an owner that hangs", [](auto& editor) { editor.neverAnswers = true; }},
  };
  start();
  for (const auto& [name, prepare] : cases) {
    const auto editor = editorWith("text");
    desktop.pasteboard.put("Someone", "an older copy");
    prepare(*editor);
    run(ActionCase::fixGrammar);
    desktop.queue.settle();
    EXPECT_TRUE(loading.visible) << name;
    desktop.advance(5s);
    EXPECT_TRUE(desktop.http.exchanges.empty()) << name;
    EXPECT_TRUE(desktop.alerts.shown.empty()) << name;
    EXPECT_FALSE(loading.visible) << name;
    EXPECT_FALSE(services().actionService.isLoading.get()) << name;
  }
  EXPECT_TRUE(logged("copied text is empty"));
}

TEST_F(DirectRun, withoutAProviderCountsAndKeepsTheIndicatorUntilTheAlertIsClosed) {
  start();
  auto& providers = services().providerStore;
  ASSERT_TRUE(providers.changeConfig(providers.configs->front().id, [](auto& config) { config.enabled = false; }));
  const struct {
    std::optional<Uuid> provider;
    std::string title;
  } cases[] = {{Uuid::random(), "Provider Not Found"}, {std::nullopt, "Provider Quillmark Disabled"}};
  std::int64_t count = 0;
  for (const auto& [provider, title] : cases) {
    editorWith("teh cat");
    Command command = commandOf(ActionCase::fixGrammar);
    command.provider = provider;
    services().actionService.runCommand(command, true);
    desktop.advance(10s);
    ASSERT_EQ(desktop.alerts.open.size(), 1u) << title;
    EXPECT_EQ(desktop.alerts.open[0].title, title);
    EXPECT_TRUE(loading.visible) << "the indicator waits behind the alert";
    EXPECT_EQ(commandOf(ActionCase::fixGrammar).usageCount, ++count);
    EXPECT_EQ(services().statistics.read().commandUsage.at("Fix Grammar & Spelling"), count);
    desktop.alerts.close();
    desktop.queue.settle();
    EXPECT_FALSE(loading.visible);
  }
  EXPECT_TRUE(requests().empty());
  EXPECT_TRUE(services().statistics.read().providerUsage.empty());
}

TEST_F(DirectRun, thatFailsLeavesTheOtherApplicationAsItWas) {
  start();
  const auto editor = editorWith("teh cat");
  run(ActionCase::fixGrammar);
  desktop.advance(100ms);
  request().answer(500, "application/json", "{}");
  desktop.advance(1s);
  ASSERT_EQ(desktop.alerts.open.size(), 1u);
  EXPECT_TRUE(services().actionService.isLoading.get());
  run(ActionCase::fixGrammar);
  desktop.alerts.close();
  desktop.advance(1s);
  EXPECT_EQ(editor->text, "teh cat");
  EXPECT_EQ(desktop.pasteboard.text, "teh cat");
  EXPECT_FALSE(loading.visible);
  EXPECT_EQ(desktop.http.exchanges.size(), 1u);
  EXPECT_EQ(services().statistics.read().providerUsage.count("Quillmark"), 1u);
}

TEST_F(DirectRun, usesTheCommandsOwnTemplateModelAndProvider) {
  start();
  editorWith("text");
  Command command = commandOf(ActionCase::fixGrammar);
  command.content = "";
  command.model = "special";
  command.behavior = ActionBehavior::copyToClipboard;
  services().actionService.runCommand(command, true);
  desktop.advance(100ms);
  const Json body = parseJson(*request().request.body);
  EXPECT_EQ(body["messages"].size(), 1u) << "an empty template is a template";
  EXPECT_EQ(body["model"], "special");
}

TEST_F(DirectRun, fixesItsBehaviourAtTheTrigger) {
  start();
  const auto editor = editorWith("teh cat");
  everyRequestIsAnswered("the cat");
  run(ActionCase::fixGrammar);
  services().actionService.defaultBehavior.set(ActionBehavior::copyToClipboard);
  desktop.advance(1s);
  EXPECT_EQ(editor->text, "the cat");
}

TEST_F(DirectRun, pastesTheSecondOfTwoTextsTwiceWhenTheyComeTooClose) {
  start();
  const auto editor = editorWith("");
  SelectionCapture capture(desktop.queue, desktop.pasteboard, desktop.keyInjector);
  capture.pasteText("one");
  desktop.advance(50ms);
  capture.pasteText("two");
  desktop.advance(1s);
  EXPECT_EQ(editor->text, "twotwo");
}

TEST_F(DirectRun, goesBackToTheApplicationThatWasInFrontBeforeTheTrigger) {
  const KeyCombination hotKey{5, KeyCombination::control};
  storeShortcut("fixGrammar", hotKey);
  start();
  everyRequestIsAnswered("answer");
  const std::function<void()> byHotKey = [&] { desktop.hotKeys.press(hotKey); };
  const std::function<void()> byOtherPrograms = [&] { app->triggerCommand("fix-grammar-spelling"); };
  const std::function<void()> byTheTray = [&] { run(ActionCase::fixGrammar); };
  const struct {
    std::function<void()> trigger;
    Duration inFront;  ///< how long the second application has been in front
    bool goesToTheFirst;
  } cases[] = {{byHotKey, 300ms, true},
               {byHotKey, 700ms, false},
               {byOtherPrograms, 300ms, true},
               {byOtherPrograms, 700ms, false},
               {byTheTray, 700ms, true}};
  for (const auto& [trigger, inFront, goesToTheFirst] : cases) {
    const auto first = editorWith("first");
    // The mark of this run stays. Only a trigger by the user replaces it.
    run(ActionCase::summarize, ActionBehavior::copyToClipboard);
    desktop.advance(1s);
    const auto second = desktop.openEditor("Second", "second");
    desktop.advance(inFront);
    trigger();
    desktop.advance(1s);
    EXPECT_EQ(first->text == "answer", goesToTheFirst);
    EXPECT_EQ(second->text == "answer", !goesToTheFirst);
  }
}

TEST_F(DirectRun, saysWhichCommandIsMissing) {
  ActionService& service = start().services().actionService;
  service.runCommandById(Uuid::random(), true);
  EXPECT_EQ(closeAlert(), "Command Not Found: The command is not available. Did you delete it?");
  service.runCommandBySlug("no-such", true);
  EXPECT_EQ(closeAlert(), "Command Not Found: No command found for slug no-such. Did you delete it?");
  service.runAction(ActionCase::asTweet, true);
  EXPECT_EQ(
      closeAlert(),
      "Command As Tweet Not Found: The command As Tweet is not available. Did you delete it? You can add it again "
      "with the 'Add Template' button.");
}

}  // namespace
}  // namespace quillmark
