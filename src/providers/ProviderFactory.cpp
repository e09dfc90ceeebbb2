#include "providers/ProviderFactory.h"

#include <stdexcept>

#include "providers/AnthropicProvider.h"
#include "providers/BaseProvider.h"
#include "providers/OpenAIProvider.h"
#include "providers/QuillmarkProvider.h"
#include "providers/VendorProviders.h"

namespace quillmark {
std::unique_ptr<AIProvider> ProviderFactory::makeProvider(const ProviderConfig& config) const {
  switch (config.providerType) {
    case ProviderType::quillMark:
      return std::make_unique<QuillmarkProvider>(config, environment_);
    case ProviderType::openAICompatible:
    case ProviderType::xAI:
    case ProviderType::mistral:
    case ProviderType::deepSeek:
    case ProviderType::perplexity:
      return std::make_unique<BaseProvider>(config, environment_);
    case ProviderType::openAI:
      return std::make_unique<OpenAIProvider>(config, environment_);
    case ProviderType::anthropic:
      return std::make_unique<AnthropicProvider>(config, environment_);
    case ProviderType::groq:
      return std::make_unique<GroqProvider>(config, environment_);
    case ProviderType::ollama:
      return std::make_unique<OllamaProvider>(config, environment_);
    case ProviderType::openRouter:
      return std::make_unique<OpenRouterProvider>(config, environment_);
    case ProviderType::togetherAI:
      return std::make_unique<TogetherAIProvider>(config, environment_);
    case ProviderType::googleAI:
      return std::make_unique<GoogleAIProvider>(config, environment_);
    case ProviderType::azureOpenAI:
      return std::make_unique<AzureProvider>(config, environment_);
  }
  throw std::logic_error("no such type of provider");
}

}  // namespace quillmark
