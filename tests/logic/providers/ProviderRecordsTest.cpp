#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/simulated/SimulatedDefaults.h"
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
  for (const auto& config : store.configs.get()) {
    EXPECT_EQ(config.enabled, config.providerType == ProviderType::quillMark) << config.name;
  }
  ProviderStore again(defaults);
  again.load();
  EXPECT_EQ(again.configs.get(), store.configs.get());
}

TEST_F(Providers, takeOverAnOldKey) {
  store.openAIApiKey.set("sk-old");
  store.load();
  EXPECT_EQ(store.configs.get()[1].apiKey, "sk-old");
  EXPECT_TRUE(store.configs.get()[1].enabled);
  EXPECT_EQ(store.openAIApiKey.get(), "");
  EXPECT_EQ(store.defaultConfig()->providerType, ProviderType::quillMark);
}

TEST_F(Providers, areNotReplacedByTheDefaultOneWhenTheirIdIsUnknown) {
  store.load();
  EXPECT_FALSE(store.config(Uuid::random()).has_value());
  store.defaultProvider.set(Uuid::random().toString());
  EXPECT_FALSE(store.defaultConfig().has_value());
  store.defaultProvider.set("not a uuid");
  EXPECT_EQ(store.defaultConfig()->providerType, ProviderType::quillMark);
}

TEST_F(Providers, keepAListThatDoesNotDecode) {
  const Data unknownType{R"([{"providerType":"openai","apiKey":"sk"},{"providerType":"future"}])"};
  defaults.set(ProviderStore::userDefaultsKey, unknownType);
  store.load();
  EXPECT_EQ(store.configs.get().size(), 9u);
  EXPECT_EQ(defaults.get<Data>("providerStore.undecodable-1"), unknownType);
}

}  // namespace
}  // namespace quillmark
