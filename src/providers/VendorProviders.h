#pragma once

#include "providers/BaseProvider.h"

namespace quillmark {

// One class for each backend with a variant of the chat completions dialect. BaseProvider serves those without one.

class GroqProvider : public BaseProvider {
 public:
  GroqProvider(const ProviderConfig& config, const ProviderEnvironment& environment)
      : BaseProvider(config, ProviderType::groq, environment) {}

 protected:
  ChatDialect dialect() const override;
};

class OllamaProvider : public BaseProvider {
 public:
  OllamaProvider(const ProviderConfig& config, const ProviderEnvironment& environment)
      : BaseProvider(config, ProviderType::ollama, environment) {}

 protected:
  ChatDialect dialect() const override;
};

class OpenRouterProvider : public BaseProvider {
 public:
  OpenRouterProvider(const ProviderConfig& config, const ProviderEnvironment& environment)
      : BaseProvider(config, ProviderType::openRouter, environment) {}

 protected:
  ChatDialect dialect() const override;
};

/// Lists its models as a bare array, including many that can't chat.
class TogetherAIProvider : public BaseProvider {
 public:
  TogetherAIProvider(const ProviderConfig& config, const ProviderEnvironment& environment)
      : BaseProvider(config, ProviderType::togetherAI, environment) {}

 protected:
  ChatDialect dialect() const override;
};

/// The base URL is the whole URL of a deployment. Lists no models.
class AzureProvider : public BaseProvider {
 public:
  AzureProvider(const ProviderConfig& config, const ProviderEnvironment& environment)
      : BaseProvider(config, config.providerType, environment) {}

 protected:
  ChatDialect dialect() const override;
};

/// The dialect as a path of Google's own API. Its listing prefixes identifiers with "models/"; its chats take them
/// without.
class GoogleAIProvider : public BaseProvider {
 public:
  GoogleAIProvider(const ProviderConfig& config, const ProviderEnvironment& environment)
      : BaseProvider(config, config.providerType, environment) {}

 protected:
  ChatDialect dialect() const override;
};

}  // namespace quillmark
