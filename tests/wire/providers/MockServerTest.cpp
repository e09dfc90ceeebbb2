#include <filesystem>

#include <gmock/gmock.h>

#include "support/TemporaryDirectory.h"
#include "wire/providers/ProviderWire.h"

namespace quillmark {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

/// A chat completions server from the registry of npm, which the fixture of this test has installed. What it says of
/// itself is its own; the rules beside start.js add an answer with every field, and a key that is refused.
struct MockServer : ProviderWire {
  MockServer() {
    if (!std::filesystem::exists(QUILLMARK_MOCK_SERVER_INSTALLED "/node_modules")) {
      ADD_FAILURE() << "the server is not installed: run this test by ctest, which does that first";
      return;
    }
    const auto output = files / "output";
    const char* path = std::getenv("PATH");
    server = std::make_unique<Process>(
        std::vector<std::string>{"node", QUILLMARK_MOCK_SERVER "/start.js", QUILLMARK_MOCK_SERVER_INSTALLED,
                                 QUILLMARK_MOCK_SERVER "/rules.json"},
        std::map<std::string, std::string>{{"PATH", path != nullptr ? path : "/usr/bin:/bin"}, {"HOME", files.path()}},
        Process::Streams{.output = output});
    root = waitForOutput(output, "listening on ").value_or("http://127.0.0.1:1");
    EXPECT_THAT(readFile(output), HasSubstr("listening on "));
  }

  TemporaryDirectory files;
  std::unique_ptr<Process> server;
  std::string root;
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
  std::optional<std::vector<ProviderModel>> models;
  bool listed = false;
  const auto provider = base(root + "/v1");
  provider->listModels([&](auto list) {
    models = std::move(list);
    listed = true;
  });
  ASSERT_TRUE(run([&] { return listed; }));
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
  for (const auto* key : {"wrong", "k3y"}) {
    const auto provider = base(root + "/v1", key);
    const auto before = verdicts.size();
    provider->validateApiKey([&](bool valid) { queue.async([&verdicts, valid] { verdicts += valid ? 'y' : 'n'; }); });
    ASSERT_TRUE(run([&] { return verdicts.size() > before; }));
  }
  EXPECT_EQ(verdicts.front(), 'n');
}

}  // namespace
}  // namespace quillmark
