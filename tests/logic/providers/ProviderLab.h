#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/Log.h"
#include "base/Text.h"
#include "platform/simulated/SimulatedDesktop.h"
#include "providers/ProviderFactory.h"

namespace quillmark {

/// Providers of every kind in front of a simulated network.
struct ProviderLab : testing::Test {
  ProviderLab() {
    setLogSink([this](std::string_view line) { log.append(line).append("\n"); });
  }
  ~ProviderLab() override { setLogSink({}); }

  std::string log;
  SimulatedDesktop desktop;
  AlertHandler alerts{desktop.queue, desktop.alerts};
  AppConfig appConfig{desktop.defaults, 3999};
  HttpTransport transport{
      desktop.http, desktop.queue, {"quillmark", "id", "2.13.0", std::nullopt}, {"Linux", 6, 1, 0}, desktop.locale};
  ProviderFactory factory{{transport, desktop.http, desktop.queue, alerts, desktop.defaults, appConfig}};

  std::unique_ptr<AIProvider> base(const std::string& baseURL = "http://server/v1") {
    return factory.makeProvider(ProviderConfig::make({.providerType = ProviderType::openAICompatible,
                                                      .name = "Mine",
                                                      .apiKey = " key\n",
                                                      .baseURL = baseURL,
                                                      .defaultModel = "m-default"}));
  }
  static ProviderConfig configOf(ProviderType type, const std::string& model) {
    return ProviderConfig::make({.providerType = type,
                                 .name = "Mine",
                                 .apiKey = " s3cret\n",
                                 .baseURL = "http://server/v1",
                                 .defaultModel = model});
  }
  std::unique_ptr<AIProvider> hosted() {
    return factory.makeProvider(ProviderConfig::make({.providerType = ProviderType::quillMark, .name = "Hosted"}));
  }
  const SimulatedHttpSession::Exchange& last() { return desktop.http.exchanges.back(); }

  /// The answer of one chat whose response `respond` makes; "(absent)" without one, "(none)" without a call.
  std::string chat(
      AIProvider& provider, const std::function<void()>& respond = [] {}) {
    std::string result = "(none)";
    provider.chat("teh cat", "fix it", std::nullopt, [&](const auto& answer) { result = answer.value_or("(absent)"); });
    respond();
    desktop.queue.settle();
    return result;
  }

  struct Stream {
    std::vector<std::string> pieces;
    std::string whole = "(none)";
    int completions = 0;
  };
  std::shared_ptr<Stream> stream(AIProvider& provider) {
    auto seen = std::make_shared<Stream>();
    provider.streamChat(
        "teh cat", "", "m-2",
        [seen](const std::string& piece) {
          EXPECT_EQ(seen->completions, 0) << "nothing comes after the end";
          seen->pieces.push_back(piece);
        },
        [seen](const auto& whole) {
          seen->whole = whole.value_or("(absent)");
          ++seen->completions;
        });
    return seen;
  }
};

}  // namespace quillmark
