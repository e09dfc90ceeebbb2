#include "providers/ProviderFactory.h"

#include "base/Localization.h"
#include "providers/BaseProvider.h"
#include "providers/QuillmarkProvider.h"

namespace quillmark {
namespace {

/// Stands in for the kinds of backend that this version can't talk to yet, and says so.
class UnsupportedProvider : public AIProvider {
 public:
  UnsupportedProvider(const ProviderConfig& config, const ProviderEnvironment& environment)
      : AIProvider(config, config.providerType), environment_(environment) {}

  void chat(const std::string& /*text*/, const std::string& /*systemPrompt*/,
            const std::optional<std::string>& /*model*/, ChatCompletion completion) override {
    environment_.alerts.show(AlertKind::issue(
        name(), tr("This version of Quillmark can't talk to this kind of provider yet. Please select another one.")));
    environment_.queue.async([completion = std::move(completion)] { completion(std::nullopt); });
  }

  void streamChat(const std::string& text, const std::string& systemPrompt, const std::optional<std::string>& model,
                  std::function<void(const std::string&)> /*onChunk*/, ChatCompletion onComplete) override {
    chat(text, systemPrompt, model, std::move(onComplete));
  }

  void listModels(std::function<void(std::optional<std::vector<ProviderModel>>)> completion) override {
    completion(std::nullopt);
  }

 private:
  ProviderEnvironment environment_;
};

}  // namespace

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
    case ProviderType::anthropic:
    case ProviderType::groq:
    case ProviderType::ollama:
    case ProviderType::openRouter:
    case ProviderType::togetherAI:
    case ProviderType::googleAI:
    case ProviderType::azureOpenAI:
      break;
  }
  return std::make_unique<UnsupportedProvider>(config, environment_);
}

}  // namespace quillmark
