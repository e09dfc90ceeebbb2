#include "scenarios/Scenario.h"

namespace quillmark {
namespace {

const std::string catalogue = std::string(AppConfig::publicRoot) + "/api/prompts";
constexpr const char* bulletPoints =
    R"({"id":"1","slug":"bullet-points","title":"Bullet Points","prompt":"List it.","category":"Rewrite","tags":[],)"
    R"("created_at":"","updated_at":"","is_public":true})";

struct Installing : Scenario {
  bool installed(const std::string& slug) { return app->promptStore().commandForSlug(slug).has_value(); }
  void install(const std::string& slug) {
    services().commandImportService.install(slug);
    desktop.queue.settle();
  }
  void answer(const std::string& body, int status = 200) {
    request().answer(status, "application/json", body);
    desktop.queue.settle();
  }
  /// Makes a configuration the one that commands use.
  void use(ProviderType type, bool enabled) {
    auto& store = services().providerStore;
    ProviderConfig config = *std::ranges::find(store.configs.get(), type, &ProviderConfig::providerType);
    config.enabled = enabled;
    ASSERT_TRUE(store.updateConfig(config));
    store.defaultProvider.set(config.id.toString());
  }
};

TEST_F(Installing, putsTheTitleIntoTheInterfaceLanguage) {
  desktop.locale.languages = {"de-DE"};
  desktop.locale.names[{"de", "de"}] = "Deutsch";
  start();
  use(ProviderType::openAI, true);
  install("bullet-points");
  install("bullet-points");
  ASSERT_EQ(desktop.http.exchanges.size(), 1u) << "it is under way";
  EXPECT_EQ(request().request.url, catalogue + "/bullet-points");
  EXPECT_EQ(request().request.headers.size(), 3u) << "those of the session";
  answer(bulletPoints);
  install("bullet-points");
  ASSERT_EQ(desktop.http.exchanges.size(), 2u) << "and still is";
  EXPECT_THAT(parseJson(*request().request.body)["messages"][1]["content"],
              testing::StartsWith("Translate the following command title to Deutsch. \nReturn ONLY the "));

  Json translation = parseJson(answerJson(" \n Stichpunkte\n"));
  translation.update({{"id", "1"}, {"system_fingerprint", "f"}});
  translation["choices"][0]["finish_reason"] = "stop";
  request().answerJson(toText(translation));
  EXPECT_FALSE(installed("stichpunkte")) << "this provider answers on the network's thread";
  desktop.queue.settle();
  EXPECT_EQ(desktop.alerts.open.at(0).style, AlertStyle::informational);
  EXPECT_EQ(desktop.alerts.open.at(0).buttons, std::vector<std::string>{"OK"});
  EXPECT_EQ(closeAlert(), "Installation Successful: Command 'Stichpunkte' has been installed successfully!");
  start();
  ASSERT_TRUE(installed("stichpunkte"));
  const Command command = *app->promptStore().commandForSlug("stichpunkte");
  EXPECT_EQ(command.slug, "bullet-points");
  EXPECT_EQ(command.content, "List it.");
  EXPECT_EQ(command.category, CommandCategory::rewrite);
}

TEST_F(Installing, keepsTheTitleThatNobodyTranslates) {
  start();
  const std::string success = "Installation Successful: Command 'Bullet Points' has been installed successfully!";
  install("bullet-points");
  answer(bulletPoints);
  answer("{}", 500);
  EXPECT_EQ(closeAlert(), "Unknown Error: Response status code was unacceptable: 500.");
  EXPECT_EQ(closeAlert(), success);
  install("bullet-points");
  EXPECT_EQ(closeAlert(), "Installation Failed: Command 'bullet-points' is already installed");

  Command renamed = *app->promptStore().commandForSlug("bullet-points");
  renamed.name = "Mine";
  ASSERT_TRUE(app->promptStore().update(renamed));
  install("bullet-points");
  answer(bulletPoints);
  answer(answerJson(" \n"));
  EXPECT_EQ(closeAlert(), success);

  use(ProviderType::groq, false);
  ASSERT_TRUE(app->promptStore().save([](auto& list) { list.clear(); }, "test"));
  const auto requests = desktop.http.exchanges.size();
  install("bullet-points");
  answer(bulletPoints);
  EXPECT_EQ(closeAlert(), success);
  EXPECT_EQ(desktop.http.exchanges.size(), requests + 1) << "a provider that is off is not asked";
}

TEST_F(Installing, saysWhyItFailed) {
  start();
  const auto commands = app->promptStore().prompts.get();
  const std::string failure = "Installation Failed: Failed to install command: ";
  for (const std::size_t attempt : {1u, 2u}) {
    install("gone");
    ASSERT_EQ(desktop.http.exchanges.size(), attempt);
    answer("{}", 404);
    EXPECT_EQ(desktop.alerts.open.at(0).style, AlertStyle::warning);
    EXPECT_EQ(closeAlert(), failure + "Response status code was unacceptable: 404.");
  }
  install("é");
  EXPECT_EQ(closeAlert(), failure + "URL is not valid: " + catalogue + "/é");
  EXPECT_EQ(app->promptStore().prompts.get(), commands);
}

struct Catalogue : Scenario {};

TEST_F(Catalogue, isFetchedOnceTheProgramHasStarted) {
  desktop.defaults.remove("templatesLastFetch");
  start();
  ASSERT_EQ(desktop.http.exchanges.size(), 1u);
  EXPECT_EQ(request().request.url, catalogue);
  request().answerJson("[" + std::string(bulletPoints) + "]");
  desktop.queue.settle();
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(services().templateStore.templates->at(0).name, "Bullet Points");
    start();
  }
  EXPECT_EQ(desktop.http.exchanges.size(), 1u);
  desktop.queue.setNow(desktop.queue.now() + 7 * 24h);
  start();
  EXPECT_EQ(desktop.http.exchanges.size(), 2u) << "a week later";
}

}  // namespace
}  // namespace quillmark
