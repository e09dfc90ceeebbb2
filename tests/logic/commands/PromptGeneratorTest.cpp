#include <gtest/gtest.h>

#include "commands/PromptGenerator.h"
#include "commands/VariablesStore.h"
#include "platform/simulated/SimulatedDesktop.h"

namespace quillmark {
namespace {

Variable userVariable(const std::string& key, const std::string& value) {
  return {Uuid::random(), key, value, "", false};
}

std::string generate(const std::string& promptTemplate, const UserAction& action,
                     const std::vector<Variable>& variables = {}) {
  return PromptGenerator(action, variables).generate(promptTemplate, action);
}

TEST(Prompts, fillOnlyTheirOwnParameter) {
  EXPECT_EQ(generate("to {{language}}, {{tone}}", UserAction::translate("de")), "to de, {{tone}}");
  EXPECT_EQ(generate("a {{tone}} tone", UserAction::changeTone("Witty")), "a Witty tone");
  EXPECT_EQ(generate("[{{task}}]", UserAction::freeStyle("rhyme")), "[rhyme]");
  EXPECT_EQ(generate("to {{language}}.", ActionCase::translate), "to .");
  EXPECT_EQ(generate("{{ name }} {{unknown}}", ActionCase::asEmail, {userVariable("name", "Ada")}),
            "{{ name }} {{unknown}}");
}

TEST(Prompts, fillVariablesOneAfterTheOtherOverTheGrowingText) {
  const std::vector<Variable> variables{userVariable("a", "{{b}}"), userVariable("b", "{{a}}")};
  EXPECT_EQ(generate("{{a}} {{b}}", ActionCase::customPrompt, variables), "{{a}} {{a}}");
}

TEST(Prompts, letNoVariableStandForToneOrLanguageButOneForTheTask) {
  EXPECT_EQ(generate("{{tone}}", UserAction::changeTone("Calm"), {userVariable("tone", "Loud")}), "Calm");
  EXPECT_EQ(generate("{{language}}", ActionCase::fixGrammar, {userVariable("language", "Latin")}), "{{language}}");
  EXPECT_EQ(generate("{{task}}", UserAction::freeStyle("typed"), {userVariable("task", "stored")}), "stored");
}

struct Variables : testing::Test {
  SimulatedDesktop desktop;
  std::string fill(const VariablesStore& store, const std::string& promptTemplate) {
    return generate(promptTemplate, ActionCase::fixGrammar, store.allVariables());
  }
};

TEST_F(Variables, tellTheModelWhatTheUserWritesIn) {
  VariablesStore store(desktop.defaults, desktop.locale);
  EXPECT_EQ(fill(store, "{{locale}}|{{localeString}}|{{localeSentence}}"), "none||");
  store.preferredLocale.set("de_DE");
  EXPECT_EQ(fill(store, "{{locale}}|{{localeString}}|{{localeSentence}}"),
            "de_DE|Deutsch (Deutschland)|- I write in Deutsch (Deutschland).");
  store.preferredLocale.set("xx");
  EXPECT_EQ(fill(store, "{{localeString}}|{{localeSentence}}"), "|- I write in xx.");
}

TEST_F(Variables, surviveARestartAlsoWhenAllAreGone) {
  {
    VariablesStore store(desktop.defaults, desktop.locale);
    EXPECT_EQ(fill(store, "{{name}}, {{role}}"), "Jane Sample, Managing Director of Sample Corp");
    EXPECT_FALSE(desktop.defaults.value(VariablesStore::userDefaultsKey).has_value())
        << "defaults are not written back";
    Variable mine = userVariable("name", "Ada");
    EXPECT_TRUE(store.upsert(mine));
    EXPECT_EQ(store.variable(mine.id), mine) << "the element is replaced, id included";
  }
  {
    VariablesStore store(desktop.defaults, desktop.locale);
    EXPECT_EQ(fill(store, "{{name}}"), "Ada");
    EXPECT_TRUE(store.save([](auto& list) { list.clear(); }));
  }
  VariablesStore store(desktop.defaults, desktop.locale);
  EXPECT_TRUE(store.variables.get().empty());
}

}  // namespace
}  // namespace quillmark
