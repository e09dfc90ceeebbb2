#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/posix/SqliteUserDefaults.h"
#include "providers/ProviderStore.h"
#include "support/Process.h"
#include "support/TemporaryDirectory.h"
#include "support/TestHttpServer.h"

namespace quillmark {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

struct Result {
  int status = -1;
  std::string output;
  std::string errors;
};

/// The built program with a private data directory and the built service as its backend.
struct CommandLine : testing::Test {
  static void SetUpTestSuite() {
    serviceFiles = std::make_unique<TemporaryDirectory>();
    const auto output = *serviceFiles / "output";
    service = std::make_unique<Process>(std::vector<std::string>{QUILLMARK_LOCAL_SERVICE, "--port", "0"},
                                        std::map<std::string, std::string>{}, Process::Streams{.output = output});
    servicePort = waitForOutput(output, "listening on http://127.0.0.1:").value_or("1");
  }
  static void TearDownTestSuite() {
    service.reset();
    serviceFiles.reset();
  }

  CommandLine() { EXPECT_EQ(quillmark({"defaults", "write", "useLocalApi", "bool", "true"}).status, 0); }

  Result quillmark(std::vector<std::string> arguments, const std::string& input = "") {
    const auto run = files / std::to_string(++runs);
    arguments.insert(arguments.begin(), {QUILLMARK_PROGRAM, "--data-dir", files / "data"});
    writeFile(run + ".in", input);
    Process process(arguments, environment, {run + ".in", run + ".out", run + ".err"});
    const auto status = process.exitStatus();
    return {status.value_or(-1), readFile(run + ".out"), readFile(run + ".err")};
  }

  /// Failed with nothing on standard output and exactly this message.
  static void expectComplaint(const Result& result, const testing::Matcher<const std::string&>& complaint) {
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_THAT(result.errors, AllOf(StartsWith("quillmark: "), complaint, EndsWith("\n")));
  }

  static inline std::unique_ptr<TemporaryDirectory> serviceFiles;
  static inline std::unique_ptr<Process> service;
  static inline std::string servicePort;

  TemporaryDirectory files;
  std::map<std::string, std::string> environment{
      {"HOME", files / "home"}, {"LANG", "C.UTF-8"}, {"no_proxy", "127.0.0.1"}, {"QUILLMARK_LOCAL_PORT", servicePort}};
  int runs = 0;
};

TEST_F(CommandLine, runsACommandOnStandardInput) {
  for (const bool stream : {false, true}) {
    std::vector<std::string> arguments{"run", "fix-grammar-spelling"};
    if (stream) {
      arguments.emplace_back("--stream");
    }
    const auto line = quillmark(arguments, "teh cat\n");
    EXPECT_EQ(line.status, 0);
    EXPECT_EQ(line.output, "the cat\n") << "the line end belongs to the line";
    EXPECT_EQ(line.errors, "");
    EXPECT_EQ(quillmark(arguments, "teh cat").output, "the cat");
    EXPECT_EQ(quillmark(arguments, "teh Gr\u00fc\u00dfe\n\tteh end\n\n").output, "the Gr\u00fc\u00dfe\n\tthe end\n\n");
  }
  const auto verbose = quillmark({"-v", "run", "fix-grammar-spelling"}, "teh cat");
  EXPECT_EQ(verbose.output, "the cat");
  EXPECT_THAT(verbose.errors, HasSubstr("Load provider "));
}

TEST_F(CommandLine, saysWhyARunIsNotPossible) {
  const auto run = [this](std::vector<std::string> arguments, const std::string& input = "teh cat") {
    arguments.insert(arguments.begin(), "run");
    return quillmark(arguments, input);
  };
  expectComplaint(run({"fix-grammar-spellings"}), HasSubstr("no command has the slug fix-grammar-spellings"));
  expectComplaint(run({"translate"}), HasSubstr("needs --param"));
  expectComplaint(run({"fix-grammar-spelling", "--param", "German"}), HasSubstr("takes no --param"));
  expectComplaint(run({"fix-grammar-spelling"}, ""), HasSubstr("no text on standard input"));
  expectComplaint(run({"fix-grammar-spelling"}, "\n"), HasSubstr("no text on standard input"));
  expectComplaint(run({"fix-grammar-spelling", "--provider", "Nobody"}), HasSubstr("no provider is called Nobody"));

  const auto port = std::to_string(refusedPort);
  environment["QUILLMARK_LOCAL_PORT"] = port;
  expectComplaint(run({"fix-grammar-spelling"}), HasSubstr("Could not connect to the server 127.0.0.1:" + port));
  expectComplaint(run({"fix-grammar-spelling", "--stream"}), HasSubstr("there is no answer"));
}

TEST_F(CommandLine, asksTheProviderThatIsNamed) {
  TestHttpServer server;
  for (const std::string name : {"My Server", "Resting"}) {
    EXPECT_THAT(quillmark({"providers", "add", "openai-compatible", name}).output, HasSubstr("\t" + name));
    const auto changed = quillmark({"providers", "set", name, "--key", "--base-url", server.url("/v1"), "--model",
                                    "small", name == "Resting" ? "--disable" : "--enable"},
                                   " s3cret-k3y\nmore");
    ASSERT_EQ(changed.status, 0) << changed.errors;
  }
  expectComplaint(quillmark({"providers", "add", "telepathy", "X"}), HasSubstr("there are quillMark, openai, "));
  expectComplaint(quillmark({"run", "fix-grammar-spelling", "--provider", "resting"}, "teh cat"),
                  HasSubstr("Resting 2 is disabled"));
  EXPECT_EQ(server.waitForRequests(0).size(), 0u);

  server.answer(Answer::json(200, R"({"model":"m","object":"o","created":1,"choices":[{"index":0,)"
                                  R"("message":{"role":"assistant","content":"by my server"}}]})"));
  EXPECT_EQ(quillmark({"run", "fix-grammar-spelling", "--provider", "my-server", "--model", "big"}, "teh cat").output,
            "by my server");
  const auto requests = server.waitForRequests(1);
  ASSERT_EQ(requests.size(), 1u);
  EXPECT_EQ(requests[0].target, "/v1/chat/completions");
  EXPECT_EQ(requests[0].header("Authorization"), "Bearer s3cret-k3y");
  EXPECT_THAT(requests[0].body, AllOf(HasSubstr(R"("model":"big")"), HasSubstr("teh cat")));

  server.answer(Answer::json(401, R"({"error":{"message":"no such key"}})"));
  expectComplaint(quillmark({"run", "fix-grammar-spelling", "--provider", "My Server"}, "teh cat"),
                  AllOf(HasSubstr("My Server Issue"), HasSubstr("401"), HasSubstr("there is no answer")));

  EXPECT_THAT(quillmark({"providers"}).output,
              AllOf(HasSubstr("my-server\tMy Server\tOpenAICompatible\tenabled\n"), HasSubstr("Resting")));
  server.answer(Answer::json(200, R"({"data":[{"id":"small"},{"id":"big","name":"Big"}]})"));
  EXPECT_EQ(quillmark({"providers", "models", "my server"}).output, "small\nbig\n");
  server.answer(Answer::json(500, "{}"));
  expectComplaint(quillmark({"providers", "models", "my-server"}), HasSubstr("lists no models"));
  server.answer(Answer::json(401, "{}"));
  expectComplaint(quillmark({"providers", "verify", "my-server"}), HasSubstr("My Server Issue"));
  server.answer(Answer::json(200, R"({"model":"m","object":"o","created":1,"choices":[{"index":0,)"
                                  R"("message":{"role":"assistant","content":"True"}}]})"));
  ASSERT_EQ(quillmark({"providers", "set", "resting", "--enable", "--default"}).status, 0);
  const auto verified = quillmark({"providers", "verify", "resting"});
  EXPECT_EQ(verified.output, "Resting 2 answers\n");
  EXPECT_EQ(server.waitForRequests(0).back().header("Authorization"), "Bearer s3cret-k3y");
  EXPECT_EQ(verified.status, 0);
}

TEST_F(CommandLine, listsItsCommandsAndTellsBadUsageFromFailure) {
  EXPECT_EQ(quillmark({"--version"}).output, "quillmark " QUILLMARK_VERSION "\n");
  const auto commands = quillmark({"list"});
  EXPECT_EQ(commands.status, 0);
  EXPECT_THAT(commands.output, HasSubstr("fix-grammar-spelling\tFix Grammar"));
  EXPECT_EQ(quillmark({"list"}).output, commands.output) << "what the first start makes stays";
  for (const std::vector<std::string>& arguments : {std::vector<std::string>{"--no-such-option"},
                                                    {"run"},
                                                    {"no-such-command"},
                                                    {"trigger"},
                                                    {"defaults"},
                                                    {"defaults", "write", "key", "colour", "red"}}) {
    const auto result = quillmark(arguments);
    EXPECT_EQ(result.status, 2) << arguments.front();
    EXPECT_EQ(result.output, "");
    EXPECT_NE(result.errors, "");
  }
  EXPECT_THAT(quillmark({"run", "--help"}).output, HasSubstr("--param"));
}

TEST_F(CommandLine, keepsSettingsAndKnowsTheKeysOfTheProgram) {
  EXPECT_EQ(quillmark({"defaults", "write", "number", "int", "-7"}).status, 0);
  EXPECT_EQ(quillmark({"defaults", "read", "number"}).output, "-7\n");
  EXPECT_EQ(quillmark({"defaults", "remove", "number"}).status, 0);
  expectComplaint(quillmark({"defaults", "read", "number"}), HasSubstr("nothing is stored under number"));
  expectComplaint(quillmark({"defaults", "write", "number", "int", "7x"}), HasSubstr("'7x' is no int"));
  EXPECT_EQ(quillmark({"defaults", "write", "main.isLoading", "true"}).status, 0);
  EXPECT_EQ(quillmark({"defaults", "write", "KeyboardShortcuts_translate", "{}"}).status, 0);
  EXPECT_EQ(quillmark({"defaults", "write", "apiKey", "sk-secret"}).status, 0);
  expectComplaint(quillmark({"defaults", "write", "main.isLoading", "yes"}), HasSubstr("'yes' is no bool"));
  expectComplaint(quillmark({"defaults", "write", "main.isLoading", "string", "true"}), HasSubstr("holds a bool"));
  expectComplaint(quillmark({"defaults", "write", "customPrompts2", "[]"}), HasSubstr("can't be written by hand"));
  expectComplaint(quillmark({"defaults", "write", "unheard", "of"}), HasSubstr("say its type"));

  const auto list = quillmark({"defaults", "list"}).output;
  EXPECT_THAT(list, testing::ContainsRegex("main.isLoading +bool +true\n"));
  EXPECT_THAT(list, testing::ContainsRegex("defaultBehavior +string +showReview\n"));
  EXPECT_THAT(list, testing::ContainsRegex("apiKey +string +\\(set\\)\n"));
  EXPECT_THAT(list, testing::ContainsRegex("KeyboardShortcuts_translate +string +\\{\\}\n"));
}

TEST_F(CommandLine, speaksTheLanguageThatTheUserChose) {
  environment["LC_ALL"] = "C";
  EXPECT_THAT(quillmark({"list"}).output, HasSubstr("translate\tTranslate\n"));
  environment["LANGUAGE"] = "sv:fr";
  EXPECT_THAT(quillmark({"list"}).output, HasSubstr("Traduire\n"));
  EXPECT_EQ(quillmark({"defaults", "write", "debugAppLanguage", "de"}).status, 0);
  EXPECT_THAT(quillmark({"list"}).output, HasSubstr("Übersetzen\n"));
  EXPECT_EQ(quillmark({"defaults", "write", "debugAppLanguage", "en"}).status, 0);
  EXPECT_THAT(quillmark({"list"}).output, HasSubstr("Translate\n"));
}

TEST_F(CommandLine, cannotTriggerWhatDoesNotRun) {
  environment["DBUS_SESSION_BUS_ADDRESS"] = "unix:path=" + (files / "no-bus");
  expectComplaint(quillmark({"trigger", "fix-grammar-spelling"}), HasSubstr("there is no session bus"));

  const auto address = "unix:path=" + (files / "bus");
  const Process bus({"dbus-daemon", "--session", "--nofork", "--nopidfile", "--address=" + address}, {}, {});
  ASSERT_TRUE(waitUntil([&] { return std::filesystem::exists(files / "bus"); }));
  environment["DBUS_SESSION_BUS_ADDRESS"] = address;
  expectComplaint(quillmark({"trigger", "command-menu"}), HasSubstr("Quillmark is not running"));
}

TEST_F(CommandLine, tellsWhenAChangeCouldNotBeStored) {
  ASSERT_EQ(quillmark({"providers"}).status, 0);
  const auto modelOf = [this] {
    SqliteUserDefaults defaults(files / "data/defaults.sqlite");
    ProviderStore store(defaults);
    store.load();
    return store.defaultConfig()->defaultModel;
  };
  const std::string before = modelOf();
  const std::string model(60'000, 'm');
  // A limit on the size of files, in blocks of 512 bytes, fails one write after another as a full disk does.
  const std::string limited = "trap '' XFSZ; ulimit -f $0; exec \"$@\"";
  int refused = 0;
  for (int blocks = 72;; blocks += 16) {
    ASSERT_LT(blocks, 1000);
    writeFile(files / "errors", "");
    Process process({"/bin/sh", "-c", limited, std::to_string(blocks), QUILLMARK_PROGRAM, "--data-dir", files / "data",
                     "providers", "set", "quillmark", "--model", model, "--enable"},
                    environment, {.output = files / "output", .errors = files / "errors"});
    if (process.exitStatus() == 0) {
      break;
    }
    ++refused;
    EXPECT_THAT(readFile(files / "errors"), HasSubstr("quillmark: the change could not be stored: ")) << blocks;
    EXPECT_EQ(modelOf(), before) << blocks;
  }
  EXPECT_EQ(modelOf(), model);
  EXPECT_GT(refused, 2);
}

}  // namespace
}  // namespace quillmark
