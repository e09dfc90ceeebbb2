#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/simulated/SimulatedDefaults.h"
#include "providers/ModelStore.h"
#include "providers/ProviderConfig.h"
#include "providers/ProviderModel.h"
#include "providers/ProviderStore.h"

namespace quillmark {
namespace {

TEST(ProviderConfigs, leaveOutWhatHoldsItsDefault) {
  const auto config = providerConfigFromJson(parseJson(R"({"providerType":"azure-openai"})"));
  EXPECT_TRUE(config.enabled && config.streamingEnabled);
  EXPECT_EQ(toText(toJson(config)), R"({"providerType":"azure-openai"})");

  auto full = ProviderConfig::make({.providerType = ProviderType::groq, .name = "Fast", .apiKey = "k"});
  full.enabled = full.streamingEnabled = false;
  full.organization = "org";
  EXPECT_EQ(providerConfigFromJson(parseJson(toText(toJson(full)))), full);

  EXPECT_THROW(providerConfigFromJson(parseJson(R"({"providerType":"OpenAI"})")), DecodingError);
  EXPECT_THROW(providerConfigFromJson(parseJson(R"({"name":"x"})")), DecodingError);
}

TEST(ProviderConfigs, takeWhatIsAbsentFromTheirType) {
  const auto slugOf = [](ProviderType type, const std::string& name) {
    return ProviderConfig::make({.providerType = type, .name = name}).slug;
  };
  EXPECT_EQ(slugOf(ProviderType::groq, "Whatever"), "groq");
  EXPECT_EQ(slugOf(ProviderType::openAICompatible, "My Server (home)"), "my-server-home");
  EXPECT_EQ(slugOf(ProviderType::openAICompatible, "\u81ea\u5df1"), "");
  EXPECT_EQ(ProviderConfig::make({.providerType = ProviderType::ollama}).baseURL, "http://localhost:11434/v1");
}

TEST(ProviderModels, keepTheirOptionalFields) {
  const ProviderModel model{Uuid::random(), "m-1", ProviderType::mistral, "M 1", false, 8192};
  EXPECT_EQ(providerModelFromJson(parseJson(toText(toJson(model)))), model);
  EXPECT_THROW(providerModelFromJson(parseJson(R"({"identifier":"m","providerType":"mistral"})")), DecodingError);
}

struct Providers : testing::Test {
  SimulatedDefaults defaults;
  ProviderStore store{defaults};
};

TEST_F(Providers, ofAFreshInstallationAnswerThroughTheHostedService) {
  store.load();
  ASSERT_EQ(store.configs.get().size(), 9u);
  EXPECT_EQ(store.defaultConfig()->providerType, ProviderType::quillMark);
  std::string slugs;
  for (const auto& config : store.configs.get()) {
    EXPECT_EQ(config.enabled, config.providerType == ProviderType::quillMark) << config.name;
    slugs += config.slug + " ";
  }
  EXPECT_EQ(slugs, "quillMark openai groq anthropic mistral openrouter togetherai xai ollama ");
  ProviderStore again(defaults);
  again.load();
  EXPECT_EQ(again.configs.get(), store.configs.get());
}

TEST_F(Providers, areNotReplacedByTheDefaultOneWhenTheirIdIsUnknown) {
  store.load();
  EXPECT_FALSE(store.config(Uuid::random()).has_value());
  store.defaultProvider.set(Uuid::random().toString());
  EXPECT_FALSE(store.defaultConfig().has_value());
  store.defaultProvider.set("not a uuid");
  EXPECT_EQ(store.defaultConfig()->providerType, ProviderType::quillMark);
}

TEST_F(Providers, areAddedChangedAndDeleted) {
  store.load();
  const auto add = [&](ProviderType type) {
    EXPECT_TRUE(store.addConfig(ProviderConfig::make({.providerType = type, .name = info(type).displayName})));
    return store.configs.get().back();
  };
  EXPECT_EQ(add(ProviderType::deepSeek).name, "DeepSeek");
  EXPECT_EQ(add(ProviderType::groq).name, "Groq 2");
  ProviderConfig third = add(ProviderType::groq);
  EXPECT_EQ(third.name, "Groq 3");

  third.apiKey = "gsk-1";
  EXPECT_TRUE(store.updateConfig(third));
  EXPECT_TRUE(store.updateConfig(ProviderConfig::make({.providerType = ProviderType::xAI, .name = "nobody's"})));
  store.defaultProvider.set(third.id.toString());
  ProviderStore again(defaults);
  again.load();
  EXPECT_EQ(again.configs.get(), store.configs.get());
  EXPECT_EQ(again.defaultConfig()->apiKey, "gsk-1");

  EXPECT_TRUE(again.deleteConfig({third.id, Uuid::random()}));
  EXPECT_EQ(again.configs.get().size(), 11u);
  EXPECT_FALSE(again.defaultConfig().has_value());

  defaults.diskIsFull = true;
  EXPECT_FALSE(again.addConfig(third));
  EXPECT_EQ(again.configs.get().size(), 11u) << "what can't be stored is not there";
}

TEST_F(Providers, thatAreMissingComeBackBySlug) {
  store.load();
  const auto before = defaults.value(ProviderStore::userDefaultsKey);
  EXPECT_TRUE(store.addMissingConfigs());
  EXPECT_EQ(defaults.value(ProviderStore::userDefaultsKey), before);

  ProviderConfig renamed = store.configs.get()[1];
  renamed.slug = "mine";
  EXPECT_TRUE(store.updateConfig(renamed));
  EXPECT_TRUE(store.deleteConfig({store.configs.get()[2].id}));
  EXPECT_TRUE(store.addMissingConfigs());
  ASSERT_EQ(store.configs.get().size(), 10u);
  EXPECT_EQ(store.configs.get()[8].slug, "openai");
  EXPECT_NE(store.configs.get()[8].id, renamed.id);
  EXPECT_EQ(store.configs.get()[9].slug, "groq");
}

struct Models : testing::Test {
  SimulatedDefaults defaults;

  static ProviderModel model(ProviderType type, const std::string& identifier, const std::string& name) {
    return {Uuid::random(), identifier, type, name, true, 4096};
  }
  static std::vector<std::string> names(const std::vector<ProviderModel>& models) {
    std::vector<std::string> result;
    std::ranges::transform(models, std::back_inserter(result), &ProviderModel::name);
    return result;
  }
};

TEST_F(Models, startWithWhatIsKnown) {
  ModelStore store(defaults);
  store.initializeDefaultModels();
  EXPECT_EQ(names(store.modelsFor(ProviderType::quillMark)),
            (std::vector<std::string>{"gpt-4.1-mini", "gpt-4o-mini", "meta-llama/llama-3.1-8b-instruct"}));
  std::string counts;
  for (const auto type : allCases<ProviderType>()) {
    counts += std::to_string(store.modelsFor(type).size());
  }
  EXPECT_EQ(counts, "35059093111111") << "the default model may be in the table too";

  EXPECT_TRUE(store.updateModels({model(ProviderType::quillMark, "gpt-4.1-mini", "Fast"),
                                  model(ProviderType::quillMark, "gpt-4o-mini", "Small")}));
  ModelStore next(defaults);
  next.initializeDefaultModels();
  EXPECT_EQ(names(next.modelsFor(ProviderType::quillMark)),
            (std::vector<std::string>{"Small", "gpt-4.1-mini", "meta-llama/llama-3.1-8b-instruct"}))
      << "only the default model is made plain again";
  EXPECT_EQ(next.models.get().size(), store.models.get().size());
}

TEST_F(Models, ofAProviderAreReplacedByItsList) {
  ModelStore store(defaults);
  EXPECT_TRUE(store.updateModels(
      {model(ProviderType::openAI, "b", "beta"), model(ProviderType::openAI, "a", "Zeta"),
       model(ProviderType::openAI, "whisper-1", "Whisper"), model(ProviderType::xAI, "b", "other"),
       model(ProviderType::openAI, "text-embedding-3-small", "E"), model(ProviderType::openAI, "gpt-audio", "A"),
       model(ProviderType::openAI, "dall-e-3", "D"), model(ProviderType::openAI, "b", "gamma")}));
  EXPECT_EQ(names(store.models.get()), (std::vector<std::string>{"Zeta", "gamma", "other"}));
  EXPECT_TRUE(store.cleanUpModels(ProviderType::openAI));
  EXPECT_TRUE(store.updateModels({model(ProviderType::openAI, "tts-1", "Speech")}));
  EXPECT_EQ(names(ModelStore(defaults).models.get()), std::vector<std::string>{"other"});
}

}  // namespace
}  // namespace quillmark
