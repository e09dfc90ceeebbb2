#include <filesystem>

#include <gmock/gmock.h>

#include "support/TemporaryDirectory.h"
#include "wire/providers/ProviderWire.h"

namespace quillmark {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

/// A server from the registry of npm, which the fixture of these tests has installed. What it says of itself is its
/// own.
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
    root = waitForOutput(output, "listening on ").value_or("http://127.0.0.1:1");
    EXPECT_THAT(readFile(output), HasSubstr("listening on "));
  }

  std::optional<std::vector<ProviderModel>> list(AIProvider& provider) {
    std::optional<std::vector<ProviderModel>> models;
    bool listed = false;
    provider.listModels([&](auto list) {
      models = std::move(list);
      listed = true;
    });
    EXPECT_TRUE(run([&] { return listed; }));
    return models;
  }

  TemporaryDirectory files;
  std::unique_ptr<Process> server;
  std::string root;
};

/// Speaks chat completions. The rules add an answer with every field, and a key that is refused.
struct MockServer : MockServers {
  MockServer() : MockServers("start-mock-llm.js", {QUILLMARK_MOCK_SERVERS "/rules.json"}) {}
};

TEST_F(MockServer, answersChats) {
  const auto provider = base(root + "/v1");
  for (const std::string text : {"teh cat", "Gr\u00fc\u00dfe, \u732b \U0001F600"}) {
    const auto talk = chat(*provider, text, "echo");
    ASSERT_TRUE(runToEnd(talk));
    EXPECT_EQ(talk->whole, "system said fix it, user said " + text);
  }
  EXPECT_TRUE(alerts.shown.empty());
}

TEST_F(MockServer, streamsChats) {
  const auto provider = base(root + "/v1");
  std::string text = "t";
  for (int i = 0; i < 40; ++i) {
    text += " Gr\u00fc\u00dfe " + std::to_string(i);
  }
  const auto talk = stream(*provider, text);
  ASSERT_TRUE(runToEnd(talk));
  EXPECT_EQ(talk->whole, text);
  EXPECT_EQ(talk->allPieces(), text);
  EXPECT_GT(talk->pieces.size(), 10u);
}

TEST_F(MockServer, listsItsModels) {
  const auto models = list(*base(root + "/v1"));
  ASSERT_TRUE(models && models->size() == 1);
  EXPECT_THAT(models->front().identifier, StartsWith("gpt-"));
  EXPECT_EQ(models->front().name, models->front().identifier);
}

TEST_F(MockServer, failuresAreToldInWords) {
  const auto expectAlert = [this](AIProvider& provider, const testing::Matcher<const std::string&>& message) {
    alerts.shown.clear();
    const auto talk = chat(provider, "teh cat", "some-model");
    ASSERT_TRUE(runToEnd(talk) && run([&] { return !alerts.shown.empty(); }));
    EXPECT_EQ(talk->whole, "(absent)");
    EXPECT_EQ(alerts.shown[0].title, "Mine Issue");
    EXPECT_THAT(alerts.shown[0].message, message);
  };
  const std::string status = "Response status code was unacceptable: ";
  expectAlert(*base(root + "/v2"), status + "404.");
  expectAlert(*base(root + "/v1", "wrong"), status + "401.");
  // The server's own answer has no time of creation, which the dialect demands.
  expectAlert(*base(root + "/v1"),
              AllOf(StartsWith("Response could not be decoded"), HasSubstr("created: is missing")));

  std::string verdicts;
  for (const auto& each : {std::string("wrong"), key}) {
    const auto provider = base(root + "/v1", each);
    const auto before = verdicts.size();
    provider->validateApiKey([&](bool valid) { queue.async([&verdicts, valid] { verdicts += valid ? 'y' : 'n'; }); });
    ASSERT_TRUE(run([&] { return verdicts.size() > before; }));
  }
  EXPECT_EQ(verdicts.front(), 'n');
}

/// Speaks the dialects of several vendors.
struct MockServerOfManyDialects : MockServers {
  MockServerOfManyDialects() : MockServers("start-aimock.js") {}

  std::unique_ptr<AIProvider> make(ProviderType type) {
    const int port = std::stoi(root.substr(root.rfind(':') + 1));
    return ProviderFactory({transport, http, queue, alertHandler, defaults, appConfig,
                            OpenAIClient::Configuration{.host = "127.0.0.1", .port = port, .scheme = "http"}})
        .makeProvider(ProviderConfig::make(
            {.providerType = type, .name = "Mine", .apiKey = key, .baseURL = addresses.at(type), .defaultModel = "m"}));
  }
  std::map<ProviderType, std::string> addresses{{ProviderType::openAICompatible, root + "/v1"},
                                                {ProviderType::groq, root + "/openai/v1"},
                                                {ProviderType::openRouter, root + "/api/v1"},
                                                {ProviderType::googleAI, root + "/v1beta"},
                                                {ProviderType::openAI, ""},
                                                {ProviderType::anthropic, root}};
};

TEST_F(MockServerOfManyDialects, answersChatsWholeAndStreamed) {
  for (const auto& [type, address] : addresses) {
    const auto provider = make(type);
    const auto whole = chat(*provider, "teh cat");
    ASSERT_TRUE(runToEnd(whole)) << address;
    EXPECT_EQ(whole->whole, "the cat, Gr\u00fc\u00dfe, \u732b \U0001F600") << info(type).displayName;
    const auto streamed = stream(*provider, "teh cat");
    ASSERT_TRUE(runToEnd(streamed)) << address;
    EXPECT_EQ(streamed->whole, whole->whole) << info(type).displayName;
    EXPECT_GT(streamed->pieces.size(), 2u);
  }
  EXPECT_TRUE(alerts.shown.empty());
}

TEST_F(MockServerOfManyDialects, listsItsModels) {
  for (const auto type : {ProviderType::openAICompatible, ProviderType::openAI, ProviderType::anthropic}) {
    const auto models = list(*make(type));
    ASSERT_TRUE(models) << info(type).displayName;
    EXPECT_TRUE(std::ranges::any_of(*models, [](const auto& model) { return model.identifier == "gpt-4o"; }));
  }
}

// Its error for Anthropic's API has not the vendor's form, so there are no words to be told.
TEST_F(MockServerOfManyDialects, failuresAreToldInTheVendorsWords) {
  for (const auto& [type, message] :
       {std::pair(ProviderType::openAI, "Mine Issue: No fixture matched"),
        {ProviderType::anthropic, "Anthropic Issue: status code 404"},
        {ProviderType::openAICompatible, "Mine Issue: Response status code was unacceptable: 404."}}) {
    alerts.shown.clear();
    ASSERT_TRUE(runToEnd(chat(*make(type), "something else")) && run([&] { return !alerts.shown.empty(); }));
    EXPECT_EQ(alerts.shown[0].title + ": " + alerts.shown[0].message, message);
  }
}

}  // namespace
}  // namespace quillmark
