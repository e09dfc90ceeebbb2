#include "providers/ProviderType.h"

#include "providers/AnthropicProvider.h"
#include "providers/OpenAIProvider.h"
#include "providers/QuillmarkProvider.h"
#include "providers/VendorProviders.h"

namespace quillmark {
namespace {

template <class Provider>
std::unique_ptr<AIProvider> made(const ProviderConfig& config, const ProviderEnvironment& environment) {
  return std::make_unique<Provider>(config, environment);
}

}  // namespace

using enum ProviderType;

constinit const EnumTable<ProviderTypeInfo> RawValues<ProviderType>::table{{
    {quillMark, "quillMark", "Quillmark", "quillMark", QUILLMARK_SERVICE_ROOT, "gpt-4.1-mini", QUILLMARK_SERVICE_ROOT,
     made<QuillmarkProvider>},
    {openAI, "openai", "OpenAI", "openai", "api.openai.com", "gpt-4.1-mini", "https://platform.openai.com",
     made<OpenAIProvider>},
    {openAICompatible, "openai-compatible", "OpenAICompatible", nullptr, "https://api.example.com/v1", "", "",
     made<BaseProvider>},
    {anthropic, "anthropic", "Anthropic", "anthropic", "https://api.anthropic.com", "claude-3-5-haiku-latest",
     "https://console.anthropic.com/settings/keys", made<AnthropicProvider>},
    {groq, "groq", "Groq", "groq", "https://api.groq.com/openai/v1", "llama-3.1-8b-instant",
     "https://console.groq.com/keys", made<GroqProvider>},
    {ollama, "ollama", "Ollama", "ollama", "http://localhost:11434/v1", "",
     "https://ollama.com/blog/openai-compatibility", made<OllamaProvider>},
    {openRouter, "openrouter", "OpenRouter", "openrouter", "https://openrouter.ai/api/v1", "openai/gpt-4o-mini",
     "https://openrouter.ai", made<OpenRouterProvider>},
    {togetherAI, "togetherai", "TogetherAI", "togetherai", "https://api.together.xyz/v1",
     "meta-llama/Llama-3.2-3B-Instruct-Turbo", "https://api.together.ai", made<TogetherAIProvider>},
    {xAI, "xai", "xAI", "xai", "https://api.x.ai/v1", "grok-2", "https://x.ai/api", made<BaseProvider>},
    {googleAI, "googleai", "Google AI", "googleai", "https://generativelanguage.googleapis.com/v1beta",
     "gemini-1.5-flash", "https://aistudio.google.com", made<GoogleAIProvider>},
    {mistral, "mistral", "Mistral AI", "mistral", "https://api.mistral.ai/v1", "pixtral-12b-2409", "https://mistral.ai",
     made<BaseProvider>},
    {deepSeek, "deepseek", "DeepSeek", "deepseek", "https://api.deepseek.com/v1", "deepseek-chat",
     "https://platform.deepseek.com", made<BaseProvider>},
    {perplexity, "perplexity", "Perplexity", "perplexity", "https://api.perplexity.ai", "sonar",
     "https://www.perplexity.ai", made<BaseProvider>},
    {azureOpenAI, "azure-openai", "Azure OpenAI", "azure-openai",
     "https://<YOUR-RESOURCE-NAME>.cognitiveservices.azure.com/openai/deployments/<MODEL-NAME>/chat/completions"
     "?api-version=2025-01-01-preview",
     "gpt-4o-mini", "https://oai.azure.com", made<AzureProvider>},
}};

}  // namespace quillmark
