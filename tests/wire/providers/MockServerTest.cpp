#include <filesystem>

#include <gmock/gmock.h>

#include "support/TemporaryDirectory.h"
#include "wire/providers/ProviderWire.h"

namespace quillmark {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

/// A server from the npm registry, installed by these tests' fixture.
struct MockServers : ProviderWire {
  /// Starts one by its script, with more arguments.
  explicit MockServers(const std::string& script, const std::vector<std::string>& arguments = {}) {
    if (!std::filesystem::exists(QUILLMARK_MOCK_SERVERS_INSTALLED "/node_modules")) {
      ADD_FAILURE() << "the server is not installed: run this test by ctest, which does that first";
      return;
    }
    const auto output = files / "output";
    const char* path = std::getenv("PATH");
    std::vector<std::string> command{"node", QUILLMARK_MOCK_SERVERS "/" + script, QUILLMARK_MOCK_SERVERS_INSTALLED};
    command.insert(command.end(), arguments.begin(), arguments.end());
    server = std::make_unique<Process>(
        command,
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
};

/// Speaks chat completions. The rules add an answer with every field, and a rejected key.
struct MockServer : MockServers {
  MockServer() : MockServers("start-mock-llm.js", {QUILLMARK_MOCK_SERVERS "/rules.json"}) {}
  std::unique_ptr<AIProvider> at(const std::string& path, const std::string& withKey = key) {
    return make(ProviderType::openAICompatible, port, path, withKey);
  }
};

TEST_F(MockServer, answersStreamsAndListsItsModels) {
  const auto provider = at("/v1");
  std::string text = "Gr\u00fc\u00dfe, \u732b \U0001F600";
  for (int i = 0; i < 40; ++i) {
    text += " Gr\u00fc\u00dfe " + std::to_string(i);
  }
  const auto talk = chat(*provider, text, "echo");
  ASSERT_TRUE(runToEnd(talk));
  EXPECT_EQ(talk->whole, "system said fix it, user said " + text);
  const auto streamed = stream(*provider, text);
  ASSERT_TRUE(runToEnd(streamed));
  EXPECT_EQ(streamed->whole, text);
  EXPECT_GT(streamed->pieces.size(), 10u);
  EXPECT_THAT(modelsOf(*provider), ElementsAre(StartsWith("gpt-")));
  EXPECT_TRUE(alerts.shown.empty());
}

TEST_F(MockServer, failuresAreReportedInWords) {
  const std::string status = "Mine Issue: Response status code was unacceptable: ";
  EXPECT_EQ(failureOf(at("/v2"), "teh cat"), status + "404.");
  EXPECT_EQ(failureOf(at("/v1", "wrong"), "teh cat"), status + "401.");
  // The server's own answer lacks the creation time that the dialect requires.
  EXPECT_THAT(failureOf(at("/v1"), "teh cat"),
              AllOf(StartsWith("Mine Issue: Response could not be decoded"), HasSubstr("created: is missing")));
}

/// Speaks the dialects of several vendors.
struct MockServerOfManyDialects : MockServers {
  MockServerOfManyDialects() : MockServers("start-aimock.js") {}

  const std::map<ProviderType, std::string> paths{{ProviderType::openAICompatible, "/v1"},
                                                  {ProviderType::groq, "/openai/v1"},
                                                  {ProviderType::openRouter, "/api/v1"},
                                                  {ProviderType::googleAI, "/v1beta"},
                                                  {ProviderType::openAI, ""},
                                                  {ProviderType::anthropic, ""}};
};

TEST_F(MockServerOfManyDialects, answersStreamsAndListsItsModels) {
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
TEST_F(MockServerOfManyDialects, failuresAreReportedInTheVendorsWords) {
  for (const auto& [type, message] :
       {std::pair(ProviderType::openAI, "Mine Issue: No fixture matched"),
        {ProviderType::anthropic, "Anthropic Issue: status code 404"},
        {ProviderType::openAICompatible, "Mine Issue: Response status code was unacceptable: 404."}}) {
    EXPECT_EQ(failureOf(make(type, port, paths.at(type)), "something else"), message);
  }
}

}  // namespace
}  // namespace quillmark
