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

/// Providers over real sockets: everything but the user's settings and the alerts is what the program runs with.
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
    std::string allPieces() const {
      std::string text;
      for (const auto& piece : pieces) {
        text += piece;
      }
      return text;
    }
  };

  static void SetUpTestSuite() {
    setenv("no_proxy", "127.0.0.1", 1);
    setenv("LANGUAGE", "de_DE:en", 1);
  }
  static void TearDownTestSuite() { unsetenv("LANGUAGE"); }

  std::unique_ptr<AIProvider> base(const std::string& baseURL, const std::string& withKey = key) {
    return factory.makeProvider(ProviderConfig::make({.providerType = ProviderType::openAICompatible,
                                                      .name = "Mine",
                                                      .apiKey = withKey,
                                                      .baseURL = baseURL,
                                                      .defaultModel = "small"}));
  }
  /// The hosted service, taken to be on a local port.
  std::unique_ptr<AIProvider> hosted(int port) {
    defaults.set("useLocalApi", true);
    localConfig = std::make_unique<AppConfig>(defaults, port);
    return ProviderFactory({transport, http, queue, alertHandler, defaults, *localConfig})
        .makeProvider(ProviderConfig::make({.providerType = ProviderType::quillMark, .name = "Hosted"}));
  }

  /// What comes of it appears while run() runs.
  std::shared_ptr<Talk> chat(AIProvider& provider, const std::string& text,
                             const std::optional<std::string>& model = std::nullopt) {
    auto talk = std::make_shared<Talk>();
    provider.chat(text, "fix it", model, [this, talk](std::optional<std::string> answer) {
      queue.async([talk, answer = std::move(answer)] { end(*talk, answer); });
    });
    return talk;
  }
  std::shared_ptr<Talk> stream(AIProvider& provider, const std::string& text,
                               const std::optional<std::string>& model = std::nullopt) {
    auto talk = std::make_shared<Talk>();
    provider.streamChat(
        text, "fix it", model, [talk](const std::string& piece) { talk->pieces.push_back(piece); },
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
  AppConfig appConfig{defaults, 1};
  std::unique_ptr<AppConfig> localConfig;
  CurlHttpSession http;
  HttpTransport transport{http, queue, {"quillmark", "org.quillmark", "2.13.0", "7"}, {"Linux", 6, 1, 0}, locale};
  ProviderFactory factory{{transport, http, queue, alertHandler, defaults, appConfig}};
};

}  // namespace quillmark
