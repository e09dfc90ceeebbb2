#include <filesystem>

#include <gmock/gmock.h>

#include "support/TemporaryDirectory.h"
#include "wire/providers/ProviderWire.h"

namespace quillmark {
namespace {

using testing::Contains;

/// A server from the registry of npm that speaks the dialects of several vendors; the fixture of these tests has
/// installed it. What it says of itself is its own.
struct MockServer : ProviderWire {
  MockServer() {
    if (!std::filesystem::exists(QUILLMARK_MOCK_SERVERS_INSTALLED "/node_modules")) {
      ADD_FAILURE() << "the server is not installed: run this test by ctest, which does that first";
      return;
    }
    const auto output = files / "output";
    const char* path = std::getenv("PATH");
    server = std::make_unique<Process>(
        std::vector<std::string>{"node", QUILLMARK_MOCK_SERVERS "/start-aimock.js", QUILLMARK_MOCK_SERVERS_INSTALLED},
        std::map<std::string, std::string>{{"PATH", path != nullptr ? path : "/usr/bin:/bin"}, {"HOME", files.path()}},
        Process::Streams{.output = output});
    const auto root = waitForOutput(output, "listening on ");
    EXPECT_TRUE(root) << readFile(output);
    port = root ? std::stoi(root->substr(root->rfind(':') + 1)) : 1;
  }

  std::vector<std::string> modelsOf(AIProvider& provider) {
    std::optional<std::vector<std::string>> identifiers;
    provider.listModels([&](const auto& models) {
      identifiers.emplace();
      for (const auto& model : models.value_or(std::vector<ProviderModel>())) {
        identifiers->push_back(model.identifier);
      }
    });
    EXPECT_TRUE(run([&] { return identifiers.has_value(); }));
    return identifiers.value_or(std::vector<std::string>());
  }
  /// "title: message" of the alert that a chat ends with.
  std::string failureOf(const std::unique_ptr<AIProvider>& provider, const std::string& text) {
    alerts.shown.clear();
    const auto talk = chat(*provider, text);
    EXPECT_TRUE(runToEnd(talk) && run([&] { return !alerts.shown.empty(); }));
    EXPECT_EQ(talk->whole, "(absent)");
    return alerts.shown.empty() ? "" : alerts.shown[0].title + ": " + alerts.shown[0].message;
  }

  TemporaryDirectory files;
  std::unique_ptr<Process> server;
  int port = 1;
  const std::map<ProviderType, std::string> paths{{ProviderType::openAICompatible, "/v1"},
                                                  {ProviderType::groq, "/openai/v1"},
                                                  {ProviderType::openRouter, "/api/v1"},
                                                  {ProviderType::googleAI, "/v1beta"},
                                                  {ProviderType::openAI, ""},
                                                  {ProviderType::anthropic, ""}};
};

TEST_F(MockServer, answersStreamsAndListsItsModels) {
  for (const auto& [type, path] : paths) {
    const auto provider = make(type, port, path);
    const auto whole = chat(*provider, "teh cat");
    ASSERT_TRUE(runToEnd(whole)) << path;
    EXPECT_EQ(whole->whole, "the cat, Gr\u00fc\u00dfe, \u732b \U0001F600") << info(type).displayName;
    const auto streamed = stream(*provider, "teh cat");
    ASSERT_TRUE(runToEnd(streamed)) << path;
    EXPECT_EQ(streamed->whole, whole->whole) << info(type).displayName;
    EXPECT_GT(streamed->pieces.size(), 2u);
  }
  for (const auto type : {ProviderType::openAICompatible, ProviderType::openAI, ProviderType::anthropic}) {
    EXPECT_THAT(modelsOf(*make(type, port, paths.at(type))), Contains("gpt-4o")) << info(type).displayName;
  }
  EXPECT_TRUE(alerts.shown.empty());
}

// Its error for Anthropic's API is not in the vendor's form, so there is no message to report.
TEST_F(MockServer, failuresAreReportedInTheVendorsWords) {
  for (const auto& [type, message] :
       {std::pair(ProviderType::openAI, "Mine Issue: No fixture matched"),
        {ProviderType::anthropic, "Anthropic Issue: status code 404"},
        {ProviderType::openAICompatible, "Mine Issue: Response status code was unacceptable: 404."}}) {
    EXPECT_EQ(failureOf(make(type, port, paths.at(type)), "something else"), message);
  }
}

}  // namespace
}  // namespace quillmark
