#include <fstream>
#include <sstream>

#include "scenarios/Scenario.h"

namespace quillmark {
namespace {

using testing::ElementsAre;

/// A start on the data of an older version.
struct Upgrade : Scenario {
  QuillmarkApp& startOn(const std::string& version) {
    std::ifstream file(std::string(QUILLMARK_TEST_STORES "/") + version + ".json");
    std::stringstream text;
    text << file.rdbuf();
    desktop.defaults.values.clear();
    const Json values = parseJson(text.str());
    for (const auto& [key, value] : values.items()) {
      if (value.is_array()) {
        desktop.defaults.set(key, Data{toText(value)});
      } else if (value.is_boolean()) {
        desktop.defaults.set(key, value.get<bool>());
      } else {
        desktop.defaults.set(key, value.get<std::string>());
      }
    }
    return start();
  }

  template <class T>
  T stored(const std::string& key) {
    return desktop.defaults.get<T>(key).value_or(T());
  }
  Command legal() { return *app->promptStore().commandForSlug("legal-english"); }
};

TEST_F(Upgrade, from203KeepsCommandsKeyAndSelections) {
  startOn("2.0.3");
  EXPECT_TRUE(stored<bool>("hasCompletedOnboarding"));
  EXPECT_EQ(stored<std::string>("lastMigratedVersion"), "2.13.0");
  EXPECT_EQ(stored<std::string>("appVersion"), "2.13.0");
  // The first-run decision stores the running version, so the commands count as up to date.
  ASSERT_EQ(app->promptStore().prompts.get().size(), 3u);
  EXPECT_EQ(commandOf(ActionCase::fixGrammar).usageCount, 41);
  EXPECT_EQ(commandOf(ActionCase::translate).displayName(), "Translate");
  EXPECT_EQ(legal().behavior, ActionBehavior::copyToClipboard);
  EXPECT_EQ(legal().slug, "");

  EXPECT_EQ(services().languageStore.defaultItem()->id, "fr");
  EXPECT_EQ(services().toneStore.defaultItem()->id, "friendly");
  EXPECT_FALSE(desktop.defaults.value("defaultLanguage").has_value());
  EXPECT_FALSE(desktop.defaults.value("defaultTone").has_value());

  const auto& configs = services().providerStore.configs.get();
  const auto openAI = std::ranges::find(configs, ProviderType::openAI, &ProviderConfig::providerType);
  EXPECT_EQ(openAI->apiKey, "sk-from-before-there-were-providers");
  EXPECT_TRUE(openAI->enabled);
  EXPECT_EQ(stored<std::string>("apiKey"), "");
  EXPECT_EQ(services().providerStore.defaultConfig()->providerType, ProviderType::quillMark);
}

TEST_F(Upgrade, showsTheFirstRunToWhoHasNotGrantedThePermissionUnlessThatIsDecidedAlready) {
  desktop.permissions.permission = Permission::denied;
  startOn("2.0.3");
  EXPECT_FALSE(stored<bool>("hasCompletedOnboarding"));
  EXPECT_EQ(stored<std::string>("lastMigratedVersion"), "2.13.0");
  EXPECT_TRUE(logged("Onboarding migration: User needs onboarding setup - will show onboarding flow"));

  desktop.permissions.permission = Permission::granted;
  for (const char* version : {"2.6.9", "2.7.0"}) {
    desktop.defaults.values.clear();
    desktop.defaults.set("lastMigratedVersion", std::string(version));
    start();
    EXPECT_EQ(stored<bool>("hasCompletedOnboarding"), version == std::string("2.6.9")) << version;
  }
}

TEST_F(Upgrade, from230KeepsAnEmptyListOfVariables) {
  startOn("2.3.0");
  EXPECT_EQ(stored<std::string>("lastMigratedVersion"), "2.13.0");
  EXPECT_FALSE(logged("Onboarding migration completed for version 2.13.0"));
  EXPECT_EQ(app->promptStore().prompts.get().size(), 2u);
  EXPECT_TRUE(services().variablesStore.variables.get().empty());
}

TEST_F(Upgrade, from269KeepsProviderAndShortcut) {
  startOn("2.6.9");
  EXPECT_TRUE(stored<bool>("hasCompletedOnboarding"));
  EXPECT_EQ(services().providerStore.defaultConfig()->apiKey, "gsk-mine");
  EXPECT_FALSE(legal().enabled);
  EXPECT_EQ(commandOf(ActionCase::fixGrammar).displayName(), "Fix Grammar & Spelling") << "its own name is not marked";

  EXPECT_THAT(desktop.hotKeys.registered,
              ElementsAre(testing::Pair(legal().shortcutName(),
                                        KeyCombination{37, KeyCombination::control | KeyCombination::option})));
}

TEST_F(Upgrade, from2110MarksTheUsersOwnNames) {
  startOn("2.11.0");
  EXPECT_EQ(stored<std::string>("lastMigratedVersion"), "2.13.0");
  EXPECT_EQ(commandOf(ActionCase::fixGrammar).displayName(), "Grammatik");
  EXPECT_FALSE(commandOf(ActionCase::summarize).hasCustomName);
  EXPECT_TRUE(legal().hasCustomName);
  EXPECT_TRUE(logged("Marked 'Grammatik' as customized (differs from English: 'Fix Grammar & Spelling')"));

  EXPECT_EQ(services().languageStore.enabledItems().front().id, "ja");
  EXPECT_EQ(services().languageStore.defaultItem()->id, "de_CH");
  EXPECT_FALSE(services().toneStore.defaultItem().has_value());
  EXPECT_EQ(services().toneStore.items().size(), 1u);

  const auto afterFirst = desktop.defaults.values;
  start();
  for (const char* key : {"customPrompts2", "languageSettings", "toneSettings", "providerStore"}) {
    EXPECT_EQ(desktop.defaults.value(key), afterFirst.find(key)->second) << key;
  }
}

}  // namespace
}  // namespace quillmark
