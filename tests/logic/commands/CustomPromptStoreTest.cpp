#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "commands/CustomPromptStore.h"
#include "commands/LanguageStore.h"
#include "commands/ToneStore.h"
#include "platform/simulated/SimulatedDesktop.h"

namespace quillmark {
namespace {

using testing::ElementsAre;

struct CommandStore : testing::Test {
  SimulatedDefaults defaults;
  std::vector<std::string> identifiers(const CustomPromptStore& store) {
    std::vector<std::string> result;
    for (const auto& command : store.prompts.get()) {
      result.push_back(command.type.identifier());
    }
    return result;
  }
};

TEST_F(CommandStore, startsWithTheBaseCommandsByCategory) {
  CustomPromptStore store(defaults);
  store.load();
  EXPECT_THAT(identifiers(store), ElementsAre("fixGrammar", "improveWriting", "simplifyLanguage", "makeLonger",
                                              "makeShorter", "summarize", "explainThis", "translate", "changeTone",
                                              "improvePrompt", "generatePrompt", "executePrompt"));
  CustomPromptStore again(defaults);
  again.load();
  EXPECT_EQ(again.prompts.get(), store.prompts.get());
}

TEST_F(CommandStore, findsCommandsForActions) {
  CustomPromptStore store(defaults);
  store.load();
  EXPECT_EQ(store.commandFor(UserAction::translate("de"))->type, UserAction(ActionCase::translate));
  EXPECT_EQ(store.commandFor(ActionCase::freeStyle)->id, store.commandFor(UserAction::freeStyle("x"))->id);
  EXPECT_FALSE(store.commandFor(ActionCase::asTweet).has_value());
  EXPECT_FALSE(store.command(std::nullopt).has_value());
}

TEST_F(CommandStore, looksSlugsUpByNameInOrder) {
  Command first = Command::make("My Style", std::nullopt, "1", std::nullopt, CommandCategory::writing);
  Command second = Command::make("my style!", std::nullopt, "2", std::nullopt, CommandCategory::writing);
  first.enabled = false;
  first.slug = "elsewhere";
  CustomPromptStore store(defaults);
  ASSERT_TRUE(store.save([&](auto& list) { list = {first, second}; }, std::nullopt));
  EXPECT_EQ(store.commandForSlug("my-style")->content, "1");
  EXPECT_FALSE(store.commandForSlug("elsewhere").has_value());
}

TEST_F(CommandStore, countsARunWithoutSavingIt) {
  CustomPromptStore store(defaults);
  store.load();
  const auto stored = defaults.value(CustomPromptStore::userDefaultsKey);
  store.incrementUsage(store.prompts.get()[2].id);
  store.incrementUsage(Uuid::random());
  EXPECT_EQ(store.prompts.get()[2].usageCount, 1);
  EXPECT_EQ(defaults.value(CustomPromptStore::userDefaultsKey), stored);
}

TEST_F(CommandStore, keepsTheOrderInsideACategoryOnly) {
  const auto named = [](const char* name, CommandCategory category) {
    return Command::make(name, std::nullopt, std::nullopt, std::nullopt, category);
  };
  CustomPromptStore store(defaults);
  const std::vector commands{named("z", CommandCategory::customAction), named("b", CommandCategory::rewrite),
                             named("a", CommandCategory::rewrite), named("y", CommandCategory::writing)};
  ASSERT_TRUE(store.save([&](auto& list) { list = commands; }, std::nullopt));
  std::vector<std::string> names;
  for (const auto& command : store.prompts.get()) {
    names.push_back(command.name);
  }
  EXPECT_THAT(names, ElementsAre("y", "b", "a", "z"));
}

TEST_F(CommandStore, addsUpdatesAndDuplicates) {
  CustomPromptStore store(defaults);
  store.load();
  EXPECT_TRUE(store.add(std::nullopt));
  Command added = store.prompts.get().back();
  EXPECT_EQ(added.displayName(), "New Command");
  EXPECT_EQ(added.slug, "new-command");

  added.editName("To Verse");
  EXPECT_TRUE(store.update(added));
  EXPECT_EQ(store.prompts.get().back().slug, "to-verse");

  Command grammar = *store.commandFor(ActionCase::fixGrammar);
  grammar.usageCount = 5;
  EXPECT_TRUE(store.update(grammar));
  grammar = *store.command(grammar.id);
  EXPECT_TRUE(store.duplicate(grammar.id));
  EXPECT_TRUE(store.duplicate(Uuid::random()));
  ASSERT_EQ(store.prompts.get().size(), 14u);
  const auto copies = store.commands(CommandCategory::mainAction);
  const auto copy = std::ranges::find(copies, grammar.name + " Copy", &Command::name);
  ASSERT_NE(copy, copies.end());
  EXPECT_NE(copy->id, std::exchange(grammar.id, copy->id));
  grammar.name += " Copy";
  grammar.type = ActionCase::customPrompt;
  EXPECT_EQ(*copy, grammar) << "all else stays";
  CustomPromptStore again(defaults);
  again.loadUnchanged();
  EXPECT_EQ(again.prompts.get(), store.prompts.get());
}

TEST_F(CommandStore, aNameBecomesTheUsersOwnWithTheFirstRealChange) {
  Command command = Command::make(UserAction(ActionCase::translate));
  command.name = "stored in another language";
  command.editName(command.displayName());
  EXPECT_FALSE(command.hasCustomName);
  command.editName("Translate!");
  EXPECT_TRUE(command.hasCustomName);
  EXPECT_EQ(command.displayName(), "Translate!");
  command.editName("Translate");
  EXPECT_TRUE(command.hasCustomName);
}

TEST_F(CommandStore, mergesABackupByActionOrById) {
  CustomPromptStore store(defaults);
  store.load();
  const Command before = *store.commandFor(ActionCase::summarize);

  Command builtIn = before;
  builtIn.name = "imported";
  builtIn.behavior = ActionBehavior::copyToClipboard;
  const auto merge = [&store](const Command& command) {
    ASSERT_TRUE(store.save([&](auto& list) { CustomPromptStore::merge(list, command); }, std::nullopt));
  };
  merge(builtIn);
  const Command reset = *store.commandFor(ActionCase::summarize);
  EXPECT_EQ(reset.name, before.name);
  EXPECT_EQ(reset.behavior, ActionBehavior::copyToClipboard);
  EXPECT_NE(reset.id, before.id);

  merge(Command::make(UserAction(ActionCase::asTweet)));
  Command own = Command::make("Own", std::nullopt, "1", std::nullopt, CommandCategory::writing);
  merge(own);
  own.content = "2";
  merge(own);
  EXPECT_EQ(store.prompts.get().size(), 14u);
  EXPECT_EQ(store.command(own.id)->content, "2");
}

/// A store of an older version, loaded by a running one.
struct Migration : CommandStore {
  void oldStore(const std::string& lastMigrated, const std::string& running) {
    defaults.set("lastMigratedVersion", lastMigrated);
    defaults.set("appVersion", running);
    defaults.set(CustomPromptStore::userDefaultsKey,
                 Data{R"([{"name":"Grammatik","type":{"fixGrammar":{}}},{"name":"Summarize","type":{"summarize":{}}},)"
                      R"({"id":"6F9619FF-8B86-4011-B42D-00C04FC964FF","name":"My Style","slug":"kept"}])"});
  }
};

TEST_F(Migration, runsEachStepThatIsDueByTheVersionThatTheOneBeforeLeft) {
  const struct {
    const char* lastMigrated;
    const char* running;
    bool addsCommands;
    bool addsSlugs;
    bool marksNames;
  } cases[] = {
      {"", "2.13.0", true, false, false},        {"", "2.0.3", true, true, true},
      {"2.0.3", "2.3.9", true, true, true},      {"2.3.0", "2.13.0", false, true, false},
      {"2.3.0", "2.5.0", false, true, true},     {"2.9.0", "2.13.0", false, false, true},
      {"2.12.0", "2.13.0", false, false, false},
  };
  for (const auto& [lastMigrated, running, addsCommands, addsSlugs, marksNames] : cases) {
    oldStore(lastMigrated, running);
    CustomPromptStore store(defaults);
    store.load();
    const std::string label = std::string(lastMigrated) + " under " + running;
    EXPECT_EQ(store.prompts.get().size(), addsCommands ? 13u : 3u) << label;
    const Command grammar = *store.commandFor(ActionCase::fixGrammar);
    EXPECT_EQ(grammar.slug, addsSlugs ? "grammatik" : "") << label;
    EXPECT_EQ(grammar.hasCustomName, marksNames) << label;
    EXPECT_FALSE(store.commandFor(ActionCase::summarize)->hasCustomName) << label;
    const Command own = *store.commandForSlug("my-style");
    EXPECT_EQ(own.slug, "kept") << label;
    EXPECT_EQ(own.hasCustomName, marksNames) << label;
    EXPECT_EQ(defaults.get<std::string>("lastMigratedVersion"),
              addsCommands || addsSlugs || marksNames ? running : lastMigrated)
        << label;
    CustomPromptStore stored(defaults);
    stored.loadUnchanged();
    EXPECT_EQ(stored.prompts.get(), store.prompts.get()) << label;
  }
}

/// With the languages and tones of which the flat list is made.
struct FlatList : CommandStore {
  SimulatedDesktop desktop;
  LanguageStore languages{defaults, desktop.locale};
  ToneStore tones{defaults};
  CustomPromptStore store{defaults, CustomPromptStore::Expansions{languages, tones, desktop.queue}};

  std::size_t count(ActionCase kind) {
    return static_cast<std::size_t>(std::ranges::count(store.searchableCommands.get(), kind,
                                                       [](const Command& command) { return command.type.kind; }));
  }
  Command firstOf(ActionCase kind) {
    return *std::ranges::find(store.searchableCommands.get(), kind,
                              [](const Command& command) { return command.type.kind; });
  }
};

TEST_F(FlatList, hasOneEntryForEachLanguageAndTone) {
  store.load();
  EXPECT_EQ(store.searchableCommands.get().size(), 10u + 27u + 12u);
  EXPECT_TRUE(tones.setAllEnabled(false));
  EXPECT_TRUE(tones.setEnabled("witty", true));
  EXPECT_TRUE(languages.setAllEnabled(false));
  Command translate = *store.commandFor(ActionCase::translate);
  translate.enabled = false;
  translate.model = "its-own";
  EXPECT_TRUE(store.update(translate));

  EXPECT_EQ(count(ActionCase::changeTone), 1u);
  EXPECT_EQ(firstOf(ActionCase::changeTone).name, "Change tone to Witty");
  EXPECT_EQ(firstOf(ActionCase::changeTone).type, UserAction::changeTone("Witty"));
  EXPECT_EQ(count(ActionCase::translate), 27u) << "with nothing enabled all default languages are offered";
  EXPECT_EQ(firstOf(ActionCase::translate).model, "its-own");
  EXPECT_FALSE(store.command(firstOf(ActionCase::translate).id).has_value());

  const auto isTranslate = [](const Command& command) { return command.type.kind == ActionCase::translate; };
  EXPECT_TRUE(store.save([&](auto& list) { std::erase_if(list, isTranslate); }, std::nullopt));
  EXPECT_EQ(count(ActionCase::translate), 0u);
}

TEST_F(FlatList, isSortedByUsageAsOfTheLastSave) {
  store.load();
  const Uuid last = store.searchableCommands.get().back().id;
  const Uuid summary = store.commandFor(ActionCase::summarize)->id;
  store.incrementUsage(summary);
  store.incrementUsage(last);
  EXPECT_NE(store.searchableCommands.get().front().id, summary);
  EXPECT_TRUE(store.save([](auto&) {}, std::nullopt));
  EXPECT_EQ(store.searchableCommands.get().front().id, summary);
  EXPECT_EQ(store.searchableCommands.get()[1].type, UserAction(ActionCase::fixGrammar));
}

TEST_F(FlatList, followsTheListsWhenTheyHaveBeenAtRest) {
  store.load();
  desktop.advance(std::chrono::seconds(1));
  int rebuilt = 0;
  const auto changes = store.searchableCommands.observe([&rebuilt](const auto&) { ++rebuilt; });
  for (const char* id : {"witty", "urgent", "casual"}) {
    EXPECT_TRUE(tones.setEnabled(id, false));
    desktop.advance(std::chrono::milliseconds(100));
  }
  EXPECT_EQ(rebuilt, 0);
  desktop.advance(std::chrono::milliseconds(50));
  EXPECT_EQ(rebuilt, 1);
  EXPECT_EQ(count(ActionCase::changeTone), 9u);
  EXPECT_TRUE(tones.setEnabled("witty", false));
  desktop.advance(std::chrono::seconds(1));
  EXPECT_EQ(rebuilt, 1) << "the same items are no change";
}

}  // namespace
}  // namespace quillmark
