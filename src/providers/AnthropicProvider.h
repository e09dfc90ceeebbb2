#pragma once

#include "providers/AIProvider.h"
#include "providers/AnthropicClient.h"
#include "providers/ProviderEnvironment.h"

namespace quillmark {

/// Anthropic's messages API. Its alerts show the vendor's name, whatever the configuration is called. chat() calls back
/// on the network's thread.
class AnthropicProvider : public AIProvider {
 public:
  AnthropicProvider(const ProviderConfig& config, const ProviderEnvironment& environment)
      : AIProvider(config, ProviderType::anthropic), environment_(environment) {}

  void chat(const std::string& text, const std::string& systemPrompt, const std::optional<std::string>& model,
            ChatCompletion completion) override;
  void streamChat(const std::string& text, const std::string& systemPrompt, const std::optional<std::string>& model,
                  std::function<void(const std::string&)> onChunk, ChatCompletion onComplete) override;
  void listModels(std::function<void(std::optional<std::vector<ProviderModel>>)> completion) override;

 private:
  AnthropicClient makeClient() const { return {environment_.http, apiKey(), baseURL()}; }
  /// Logs and shows a failure; any thread.
  std::function<void(const AnthropicClient::APIError&)> reporter() const;

  ProviderEnvironment environment_;
};

}  // namespace quillmark
