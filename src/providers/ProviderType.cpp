#include "providers/ProviderType.h"

#include "providers/AppConfig.h"

namespace quillmark {

// The one table of the vendors' addresses.
const ProviderTypeInfo& info(ProviderType type) {
  static const std::array<ProviderTypeInfo, RawValues<ProviderType>::table.size()> table{{
      {"Quillmark", "quillMark", AppConfig::publicRoot, "gpt-4.1-mini", AppConfig::publicRoot},
      {"OpenAI", "openai", "api.openai.com", "gpt-4.1-mini", "https://platform.openai.com"},
      {"OpenAICompatible", nullptr, "https://api.example.com/v1", "", ""},
      {"Anthropic", "anthropic", "https://api.anthropic.com", "claude-3-5-haiku-latest",
       "https://console.anthropic.com/settings/keys"},
      {"Groq", "groq", "https://api.groq.com/openai/v1", "llama-3.1-8b-instant", "https://console.groq.com/keys"},
      {"Ollama", "ollama", "http://localhost:11434/v1", "", "https://ollama.com/blog/openai-compatibility"},
      {"OpenRouter", "openrouter", "https://openrouter.ai/api/v1", "openai/gpt-4o-mini", "https://openrouter.ai"},
      {"TogetherAI", "togetherai", "https://api.together.xyz/v1", "meta-llama/Llama-3.2-3B-Instruct-Turbo",
       "https://api.together.ai"},
      {"xAI", "xai", "https://api.x.ai/v1", "grok-2", "https://x.ai/api"},
      {"Google AI", "googleai", "https://generativelanguage.googleapis.com/v1beta", "gemini-1.5-flash",
       "https://aistudio.google.com"},
      {"Mistral AI", "mistral", "https://api.mistral.ai/v1", "pixtral-12b-2409", "https://mistral.ai"},
      {"DeepSeek", "deepseek", "https://api.deepseek.com/v1", "deepseek-chat", "https://platform.deepseek.com"},
      {"Perplexity", "perplexity", "https://api.perplexity.ai", "sonar", "https://www.perplexity.ai"},
      {"Azure OpenAI", "azure-openai",
       "https://<YOUR-RESOURCE-NAME>.cognitiveservices.azure.com/openai/deployments/<MODEL-NAME>/chat/completions"
       "?api-version=2025-01-01-preview",
       "gpt-4o-mini", "https://oai.azure.com"},
  }};
  return table[static_cast<std::size_t>(type)];
}

}  // namespace quillmark
