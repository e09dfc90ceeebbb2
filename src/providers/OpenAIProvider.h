#pragma once

#include "providers/AIProvider.h"
#include "providers/OpenAIClient.h"
#include "providers/ProviderEnvironment.h"

namespace quillmark {

/// OpenAI's own service, at its fixed address: `baseURL` of the configuration is ignored. chat() calls back on the
/// network's thread.
class OpenAIProvider : public AIProvider {
 public:
  OpenAIProvider(const ProviderConfig& config, const ProviderEnvironment& environment);

  /// Absent when the configuration's is empty.
  const std::optional<std::string>& organization() const { return organization_; }

  void chat(const std::string& text, const std::string& systemPrompt, const std::optional<std::string>& model,
            ChatCompletion completion) override;
  void streamChat(const std::string& text, const std::string& systemPrompt, const std::optional<std::string>& model,
                  std::function<void(const std::string&)> onChunk, ChatCompletion onComplete) override;
  void listModels(std::function<void(std::optional<std::vector<ProviderModel>>)> completion) override;

 private:
  OpenAIClient makeClient() const;
  /// Logs and shows a failure; any thread.
  std::function<void(const std::string& description, const std::string& logLabel)> reporter() const;

  std::optional<std::string> organization_;
  ProviderEnvironment environment_;
};

}  // namespace quillmark
