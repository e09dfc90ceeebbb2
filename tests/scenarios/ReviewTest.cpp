#include "Scenario.h"

namespace quillmark {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

using enum ActionBehavior;

struct Review : Scenario {
  ReviewPanelVM& session() { return app->reviewPanel(); }
  ReviewViewState& view() { return app->reviewViewState(); }

  /// Runs a command for review in an editor; its request has just been sent.
  std::shared_ptr<SimulatedApplication> review(const std::string& text) {
    auto editor = editorWith(text);
    run(ActionCase::fixGrammar, showReview);
    desktop.advance(100ms);
    return editor;
  }
  std::shared_ptr<SimulatedApplication> startAndReview(const std::string& text) {
    start();
    return review(text);
  }

  void send(const Exchange& exchange, const std::string& piece) {
    exchange.bytes(piece);
    desktop.queue.settle();
  }
  void end(const Exchange& exchange) {
    exchange.end();
    desktop.queue.settle();
  }
  void stream(const std::string& answer) {
    send(request(), answer);
    end(request());
  }

  ProviderConfig configOf(ProviderType type) {
    return *std::ranges::find(services().providerStore.configs.get(), type, &ProviderConfig::providerType);
  }
  void setProvider(ProviderType type, bool enabled, bool streams = true) {
    auto config = configOf(type);
    config.enabled = enabled;
    config.streamingEnabled = streams;
    EXPECT_TRUE(services().providerStore.updateConfig(config));
  }

  std::string state() {
    std::string words;
    for (const auto& [holds, word] : {std::pair(session().loading().get(), "loading "),
                                      {session().isStreaming().get(), "streaming "},
                                      {session().hasError().get(), "error "},
                                      {session().isReviewOpen().get(), "open"}}) {
      words += holds ? word : "";
    }
    return words;
  }

  SimulatedWindow& window = desktop.reviewWindow;
};

TEST_F(Review, streamsTheAnswerIntoItsPanelAndPastesItOnApply) {
  start();
  services().panelSettings.reviewWindowPosition.set(ReviewWindowPosition::nearMouse);
  const auto editor = review("teh cat");
  EXPECT_TRUE(window.hasKeyboard);
  EXPECT_EQ(window.size, (Size{600, 350}));
  EXPECT_EQ(window.at, (Point{100, 320}));
  EXPECT_FALSE(loading.visible);
  EXPECT_EQ(state(), "loading streaming open");

  std::vector<std::string> pieces;
  const auto changes = session().text().changed.connect(
      [&](std::size_t kept) { pieces.push_back(session().text().get().substr(kept)); });
  send(request(), "the ");
  send(request(), "cat");
  EXPECT_EQ(state(), "loading streaming open");
  end(request());
  EXPECT_EQ(state(), "open");
  EXPECT_THAT(pieces, ElementsAre("the ", "cat")) << "the whole answer says nothing new";

  desktop.activateOwnWindow();
  session().apply(replaceSelection);
  EXPECT_FALSE(window.visible);
  desktop.advance(150ms);
  EXPECT_EQ(editor->text, "the cat");
  EXPECT_EQ(desktop.workspace.front, editor);

  const Json body = parseJson(*request().request.body);
  EXPECT_EQ(body["stream"], true);
  EXPECT_EQ(body["messages"][1]["content"], "teh cat");
  EXPECT_THAT(body["messages"][0]["content"].get<std::string>(), HasSubstr("expert grammar checker"));
  EXPECT_EQ(commandOf(ActionCase::fixGrammar).usageCount, 1);
  EXPECT_EQ(services().statistics.read().commandUsage.at("Fix Grammar & Spelling"), 1);
  EXPECT_THAT(services().statistics.read().providerUsage, ElementsAre("Quillmark"));
}

TEST_F(Review, appliesEachBehaviourExactly) {
  const struct {
    ActionBehavior behavior;
    std::string editorText;
    std::string pasteboardText;
  } cases[] = {
      {insertAfterSelection, " sel \n\n\nANSWER \n", " sel \n\n\nANSWER \n"},
      {insertBeforeSelection, "ANSWER \n\n\n sel \n", "ANSWER \n\n\n sel \n"},
      {copyToClipboard, " sel \n", "ANSWER \n"},
      {showReview, " sel \n", " sel \n"},
  };
  start();
  for (const auto& [behavior, editorText, pasteboardText] : cases) {
    const auto editor = review(" sel \n");
    stream("ANSWER \n");
    desktop.activateOwnWindow();
    session().apply(behavior);
    EXPECT_EQ(state(), "") << rawValue(behavior);
    desktop.advance(1s);
    EXPECT_EQ(editor->text, editorText) << rawValue(behavior);
    EXPECT_EQ(desktop.pasteboard.text, pasteboardText) << rawValue(behavior);
    EXPECT_EQ(desktop.workspace.front, editor);
  }
}

TEST_F(Review, copiesWhatHasArrivedBeforeTheRest) {
  startAndReview("teh cat");
  session().apply(copyToClipboard);
  EXPECT_EQ(state(), "loading streaming open") << "there is nothing yet";
  send(request(), "the ");
  session().apply(replaceSelection);
  EXPECT_EQ(state(), "loading streaming open") << "half an answer is not pasted";
  session().apply(copyToClipboard);
  stream("cat");
  desktop.advance(1s);
  EXPECT_EQ(state(), "");
  EXPECT_EQ(desktop.pasteboard.text, "the ");
}

TEST_F(Review, endsWithoutATraceWhenItIsDiscardedOrItsWindowClosed) {
  start();
  for (const auto& discard :
       std::vector<std::function<void()>>{[&] { session().discard(); }, [&] { window.closedBySystem.emit(); }}) {
    const auto editor = review("teh cat");
    EXPECT_EQ(session().text().get(), "");
    EXPECT_EQ(state(), "loading streaming open");
    ASSERT_TRUE(services().activeApplicationTracker.commandTriggerTimestamp().has_value());
    desktop.activateOwnWindow();
    discard();
    EXPECT_FALSE(window.visible);
    EXPECT_FALSE(services().activeApplicationTracker.commandTriggerTimestamp().has_value());
    stream("late");
    desktop.advance(1s);
    EXPECT_EQ(session().text().get(), "late");
    EXPECT_EQ(state(), "");
    EXPECT_EQ(editor->text, "teh cat");
    EXPECT_NE(desktop.workspace.front, editor) << "no focus is handed back";
  }
}

TEST_F(Review, reloadsWithTheChoiceOfTheMenusAndForgetsTheRequestBefore) {
  startAndReview("teh cat");
  setProvider(ProviderType::groq, true);
  const ProviderConfig groq = configOf(ProviderType::groq);
  const Exchange& left = request();
  send(left, "old");
  session().changeProvider(groq.id);
  EXPECT_EQ(session().selectedModel().get(), groq.defaultModel);
  EXPECT_EQ(session().availableModels().get(), services().modelStore.modelsFor(ProviderType::groq));
  session().changeModel("gemma2-9b-it");
  EXPECT_EQ(requests().size(), 1u) << "a choice asks nothing";

  session().reload();
  send(left, " more");
  end(left);
  EXPECT_EQ(session().text().get(), "");
  EXPECT_EQ(state(), "loading streaming open");
  EXPECT_THAT(services().statistics.read().providerUsage, ElementsAre("Quillmark")) << "it was asked, after all";

  EXPECT_EQ(request().request.url, groq.baseURL + "/chat/completions");
  EXPECT_EQ(parseJson(*request().request.body)["model"], "gemma2-9b-it");
  EXPECT_EQ(parseJson(*request().request.body)["messages"][1]["content"], "teh cat");
  stream("data: {\"choices\":[{\"delta\":{\"content\":\"the cat\"}}]}\ndata: [DONE]\n");
  EXPECT_EQ(session().text().get(), "the cat");
  EXPECT_EQ(state(), "open");
  EXPECT_THAT(services().statistics.read().providerUsage, ElementsAre("Groq", "Quillmark"));
  EXPECT_EQ(session().currentCommand()->provider, groq.id);
  EXPECT_EQ(commandOf(ActionCase::fixGrammar).provider, std::nullopt) << "the stored command is as it was";

  const auto hosted = configOf(ProviderType::quillMark);
  session().changeProvider(std::nullopt);
  EXPECT_EQ(session().selectedModel().get(), hosted.defaultModel);
  EXPECT_EQ(session().availableModels().get(), services().modelStore.modelsFor(ProviderType::quillMark));
  session().changeProvider(groq.id);
  session().changeProvider(Uuid::random());
  EXPECT_EQ(session().selectedModel().get(), hosted.defaultModel);
  EXPECT_THAT(session().availableModels().get(), IsEmpty());
}

TEST_F(Review, forgetsAStreamForARequestWithoutOneWhichCanFailToo) {
  startAndReview("teh cat");
  const Exchange& left = request();
  setProvider(ProviderType::quillMark, true, false);
  session().reload();
  EXPECT_EQ(state(), "loading open");
  send(left, "old");
  EXPECT_EQ(parseJson(*request().request.body)["stream"], false);

  session().reload();
  request().answer(500, "application/json", "{}");
  desktop.queue.settle();
  EXPECT_EQ(state(), "loading open") << "it waits behind the provider's alert";
  desktop.alerts.close();
  desktop.queue.settle();
  EXPECT_EQ(state(), "error open");

  session().reload();
  request().answerJson(answerJson("the cat"));
  desktop.queue.settle();
  EXPECT_EQ(session().text().get(), "the cat");
  EXPECT_EQ(state(), "open");
}

TEST_F(Review, saysWhichProviderIsMissingOrDisabledAndCountsNothing) {
  start();
  setProvider(ProviderType::quillMark, false);
  const Uuid unknown = Uuid::random();
  const struct {
    std::optional<Uuid> provider;
    std::string defaultProvider;
    std::string message;
  } cases[] = {
      {unknown, "", "Provider '" + unknown.toString() + "' not found. Please check your provider settings."},
      {std::nullopt, unknown.toString(), "Provider 'unknown' not found. Please check your provider settings."},
      {std::nullopt, "", "Provider 'Quillmark' is disabled. Please enable it in the settings."},
  };
  for (const auto& [provider, defaultProvider, message] : cases) {
    services().providerStore.defaultProvider.set(defaultProvider);
    const auto editor = editorWith("teh cat");
    std::vector<bool> seen;
    const auto changes = session().loading().observe([&](bool loads) { seen.push_back(loads); });
    Command command = commandOf(ActionCase::fixGrammar);
    command.provider = provider;
    command.behavior = showReview;
    services().actionService.runCommand(command, true);
    desktop.advance(1s);
    EXPECT_EQ(session().errorMessage().get(), message);
    EXPECT_THAT(seen, ElementsAre(true, false));
    session().apply(replaceSelection);
    desktop.advance(1s);
    EXPECT_EQ(state(), "error open") << "there is nothing to apply";
    EXPECT_EQ(editor->text, "teh cat");
  }
  EXPECT_TRUE(requests().empty());
  EXPECT_EQ(commandOf(ActionCase::fixGrammar).usageCount, 0);
  EXPECT_THAT(services().statistics.read().commandUsage, IsEmpty());
}

TEST_F(Review, keepsErrorAndTextApart) {
  start();
  session().reload();
  EXPECT_EQ(session().errorMessage().get(),
            "No command available to reload. Please check your command settings and try again.");
  review("teh cat");
  end(request());
  EXPECT_EQ(session().errorMessage().get(),
            "Failed to complete the request. The AI provider returned an empty response. Please try again.");
  EXPECT_EQ(state(), "error open");
  EXPECT_THAT(services().statistics.read().providerUsage, ElementsAre("Quillmark"));

  session().reload();
  send(request(), "the ");
  session().handleError("broken");
  EXPECT_EQ(session().text().get(), "the ");
  send(request(), "cat");
  EXPECT_EQ(session().errorMessage().get(), "");
  EXPECT_EQ(state(), "open");
  end(request());
  EXPECT_EQ(session().text().get(), "the cat");
}

TEST_F(Review, labelsItsMenus) {
  startAndReview("teh cat");
  const auto hosted = configOf(ProviderType::quillMark);
  EXPECT_EQ(session().providerLabel(), "Quillmark");
  EXPECT_EQ(session().selectedModel().get(), hosted.defaultModel);
  EXPECT_THAT(session().providerItems(), ElementsAre(ReviewPanelVM::ProviderItem{"Quillmark", hosted.id}));

  const auto model = [](std::string identifier, std::string name) {
    return ProviderModel{Uuid::random(), std::move(identifier), ProviderType::quillMark, std::move(name)};
  };
  auto& models = services().modelStore;
  EXPECT_TRUE(models.cleanUpModels(ProviderType::quillMark));
  EXPECT_TRUE(models.updateModels({model("a", "OpenAI: GPT-4o"), model("b", " meta-llama/Meta: Llama google/x-ai/ "),
                                   model("c", "openai: Arce AI:Two")}));
  session().updateAvailableModels();
  for (const auto& [identifier, label] :
       {std::pair("a", "GPT-4o"), {"b", "Llama"}, {"c", "openai: Two"}, {"x-ai/other", "x-ai/other"}}) {
    session().changeModel(identifier);
    EXPECT_EQ(session().modelLabel(), label);
    EXPECT_EQ(session().modelItems().size(), std::string_view(label) == "x-ai/other" ? 4u : 3u);
  }
  EXPECT_EQ(session().modelItems()[1], (ReviewPanelVM::ModelItem{"OpenAI: GPT-4o", "a"}));
  EXPECT_EQ(session().modelItems()[3], (ReviewPanelVM::ModelItem{"x-ai/other", "x-ai/other"}));

  int changes = 0;
  const auto connection = session().menusChanged.connect([&] { ++changes; });
  setProvider(ProviderType::quillMark, false);
  EXPECT_GE(changes, 1);
  EXPECT_EQ(session().providerLabel(), "Provider");
  EXPECT_THAT(session().providerItems(), IsEmpty());
  services().providerStore.defaultProvider.set(Uuid::random().toString());
  session().changeProvider(std::nullopt);
  EXPECT_EQ(session().modelLabel(), "Model");
  EXPECT_THAT(session().modelItems(), ElementsAre(ReviewPanelVM::ModelItem{"No models", std::nullopt}));
}

TEST_F(Review, showsWhatItsModeAndItsStateSay) {
  using enum ReviewViewMode;
  startAndReview("teh cat");
  const auto contents = [&] {
    std::vector<ReviewContent> found;
    for (const auto mode : {text, styled, lineByLine, wordByWord}) {
      EXPECT_EQ(view().viewMode(), mode);
      found.push_back(view().content());
      view().cycle();
    }
    return found;
  };
  constexpr auto waits = ReviewContent::loading;
  EXPECT_THAT(contents(), ElementsAre(waits, waits, waits, waits));
  send(request(), "the ");
  EXPECT_THAT(contents(), ElementsAre(ReviewContent::text, ReviewContent::styled, waits, waits));
  EXPECT_THAT(desktop.background.waiting, IsEmpty());
  session().handleError("broken");
  EXPECT_THAT(contents(), testing::Each(ReviewContent::error));
  stream("cat");
  EXPECT_THAT(contents(), ElementsAre(ReviewContent::text, ReviewContent::styled, ReviewContent::lineByLine,
                                      ReviewContent::wordByWord));
  view().setViewMode(styled);
  for (const bool enabled : {false, true}) {
    services().panelSettings.comparisonEnabled.set(enabled);
    EXPECT_EQ(view().content(), enabled ? ReviewContent::styled : ReviewContent::text);
  }
  session().open("", "");
  view().cycle();
  EXPECT_EQ(view().viewMode(), styled);
  EXPECT_EQ(view().content(), ReviewContent::text) << "there is nothing to compare with";
}

TEST_F(Review, comparesTheTextsItShowsAndOnlyThose) {
  startAndReview("teh cat");
  view().setViewMode(ReviewViewMode::wordByWord);
  std::vector<ReviewContent> contents;
  const auto changes = view().contentChanged.connect([&] {
    contents.push_back(view().content());
    if (session().isReviewOpen().get() && view().content() == ReviewContent::wordByWord) {
      EXPECT_EQ(view().words().rows().get(), std::nullopt) << "no rows of other texts come into view";
    }
  });
  for (const std::string answer : {"the bat", "the cat"}) {
    stream(answer);
    desktop.background.run();
    desktop.queue.settle();
    EXPECT_EQ(view().words().rows().get()->back().text, answer.substr(4) + " ");
    session().reload();
  }
  EXPECT_THAT(contents, ElementsAre(ReviewContent::wordByWord, ReviewContent::loading, ReviewContent::wordByWord,
                                    ReviewContent::loading));
  EXPECT_EQ(view().lines().rows().get(), std::nullopt);
  session().discard();
  stream("the dog");
  EXPECT_THAT(desktop.background.waiting, IsEmpty()) << "nobody sees it";
}

TEST_F(Review, growsWithItsTextAndIsCentredAgain) {
  startAndReview("teh cat");
  EXPECT_EQ(view().minimumSize(), (Size{600, 250}));
  const struct {
    Size measured;
    Size minimum;
    bool recentred;
  } cases[] = {
      {{400, 10}, {600, 100}, true},  {{650, 130}, {650, 150}, false}, {{651, 80}, {651, 100}, true},
      {{600, 180}, {600, 200}, true}, {{600, 230}, {600, 250}, false}, {{600, 2000}, {600, 720}, true},
  };
  int changes = 0;
  const auto connection = view().sizeChanged.connect([&] { ++changes; });
  for (const auto& [measured, minimum, recentred] : cases) {
    window.at = {1, 1};
    view().measured(measured);
    view().measured(measured);
    desktop.advance(99ms);
    EXPECT_EQ(view().minimumSize(), minimum);
    EXPECT_EQ(window.at, (Point{1, 1}));
    desktop.advance(1ms);
    EXPECT_EQ(window.at == (Point{660, 380}), recentred) << minimum.width << " by " << minimum.height;
  }
  EXPECT_EQ(changes, 6) << "a second measurement of the same is no change";
  EXPECT_EQ(view().panelSize(100), (Size{600, 720})) << "there is no text yet";
  stream("the cat");
  EXPECT_EQ(view().panelSize(100), (Size{600, 810}));
  EXPECT_EQ(view().panelSize(200), (Size{600, 840})) << "as high as most of the screen";

  services().panelSettings.windowSizing.set(ReviewWindowSizing::fixed);
  window.at = {1, 1};
  view().measured({900, 100});
  desktop.advance(1s);
  EXPECT_EQ(view().minimumSize(), (Size{600, 350}));
  EXPECT_EQ(view().panelSize(100), (Size{600, 350}));
  EXPECT_EQ(window.at, (Point{1, 1}));
  services().panelSettings.windowSizing.set(ReviewWindowSizing::dynamic);
  EXPECT_EQ(changes, 8);
  for (const auto& [text, height] : {std::pair("teh cat", 720.0), {"another text", 250.0}}) {
    review(text);
    EXPECT_EQ(view().minHeight(), height) << text;
  }
}

}  // namespace
}  // namespace quillmark
