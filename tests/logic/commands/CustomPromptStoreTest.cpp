#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "commands/CustomPromptStore.h"
#include "platform/simulated/SimulatedDefaults.h"

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

TEST_F(CommandStore, setsAsideWhatDoesNotDecodeOnceAndForGood) {
  defaults.set(CustomPromptStore::userDefaultsKey, Data{"[{\"name\":\"mine\"}, oops"});
  CustomPromptStore store(defaults);
  store.load();
  EXPECT_EQ(store.prompts.get().size(), 12u);
  EXPECT_EQ(defaults.get<Data>("customPrompts2.undecodable-1"), Data{"[{\"name\":\"mine\"}, oops"});
  defaults.set(CustomPromptStore::userDefaultsKey, Data{"later failure"});
  CustomPromptStore(defaults).load();
  EXPECT_EQ(defaults.get<Data>("customPrompts2.undecodable-1"), Data{"[{\"name\":\"mine\"}, oops"});
  EXPECT_EQ(defaults.get<Data>("customPrompts2.undecodable-2"), Data{"later failure"});
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
  store.save(std::vector{first, second}, std::nullopt);
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

}  // namespace
}  // namespace quillmark
