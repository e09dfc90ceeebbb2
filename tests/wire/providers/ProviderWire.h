#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/Log.h"
#include "platform/posix/CurlHttpSession.h"
#include "platform/posix/IcuLocaleInfo.h"
#include "platform/posix/PosixMainQueue.h"
#include "platform/simulated/SimulatedDefaults.h"
#include "providers/ProviderFactory.h"
#include "support/Process.h"

namespace quillmark {

/// Providers over real sockets: everything except the user's settings and the alerts is the program's own.
struct ProviderWire : testing::Test {
  /// Has the word that no output of these tests may hold.
  inline static const std::string key = "s3cret-k3y";

  struct NotedAlerts : Alerts {
    void present(const Alert& alert, Closed closed) override {
      shown.push_back(alert);
      std::fprintf(stderr, "alert: %s: %s\n", alert.title.c_str(), alert.message.c_str());
      closed(0);
    }
    std::vector<Alert> shown;
  };

  struct Talk {
    std::vector<std::string> pieces;
    std::string whole = "(none)";
    bool ended = false;
  };

  static void SetUpTestSuite() { setenv("no_proxy", "127.0.0.1", 1); }

  ProviderWire() { defaults.set("useLocalApi", true); }

  /// A provider of this type whose server is on a port of the loopback interface.
  std::unique_ptr<AIProvider> make(ProviderType type, int port, const std::string& path = "",
                                   const std::string& withKey = key, const std::string& scheme = "http") {
    localConfig = std::make_unique<AppConfig>(defaults, port);
    return ProviderFactory({transport, http, queue, alertHandler, defaults, *localConfig,
                            OpenAIClient::Configuration{.host = "127.0.0.1", .port = port, .scheme = scheme}})
        .makeProvider(ProviderConfig::make({.providerType = type,
                                            .name = "Mine",
                                            .apiKey = withKey,
                                            .baseURL = scheme + "://127.0.0.1:" + std::to_string(port) + path,
                                            .defaultModel = "m"}));
  }

  /// The outcome appears while run() runs.
  std::shared_ptr<Talk> chat(AIProvider& provider, const std::string& text,
                             const std::optional<std::string>& model = std::nullopt) {
    auto talk = std::make_shared<Talk>();
    provider.chat(text, "fix it", model, [this, talk](std::optional<std::string> answer) {
      queue.async([talk, answer = std::move(answer)] { end(*talk, answer); });
    });
    return talk;
  }
  std::shared_ptr<Talk> stream(AIProvider& provider, const std::string& text) {
    auto talk = std::make_shared<Talk>();
    provider.streamChat(
        text, "fix it", std::nullopt, [talk](const std::string& piece) { talk->pieces.push_back(piece); },
        [talk](const auto& whole) { end(*talk, whole); });
    return talk;
  }
  static void end(Talk& talk, const std::optional<std::string>& whole) {
    EXPECT_FALSE(talk.ended) << "one end only";
    talk.whole = whole.value_or("(absent)");
    talk.ended = true;
  }

  /// Runs the main queue until the condition holds; false after a long wait.
  bool run(const std::function<bool()>& condition) {
    return waitUntil([&] {
      queue.runReady();
      return condition();
    });
  }
  bool runToEnd(const std::shared_ptr<Talk>& talk) {
    return run([&] { return talk->ended; });
  }

  PosixMainQueue queue;
  SimulatedDefaults defaults;
  IcuLocaleInfo locale{"en"};
  NotedAlerts alerts;
  AlertHandler alertHandler{queue, alerts};
  std::unique_ptr<AppConfig> localConfig;
  CurlHttpSession http;
  HttpTransport transport{http, queue, {"quillmark", "org.quillmark", "2.13.0", "7"}, {"Linux", 6, 1, 0}, locale};
};

}  // namespace quillmark
