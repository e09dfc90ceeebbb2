#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "base/RawValue.h"

namespace quillmark {

/// The kinds of AI backend, in the order in which every list offers them.
enum class ProviderType {
  quillMark,
  openAI,
  openAICompatible,
  anthropic,
  groq,
  ollama,
  openRouter,
  togetherAI,
  xAI,
  googleAI,
  mistral,
  deepSeek,
  perplexity,
  azureOpenAI,
};

template <>
struct RawValues<ProviderType> {
  static constexpr std::array<std::pair<ProviderType, std::string_view>, 14> table{{
      {ProviderType::quillMark, "quillMark"},
      {ProviderType::openAI, "openai"},
      {ProviderType::openAICompatible, "openai-compatible"},
      {ProviderType::anthropic, "anthropic"},
      {ProviderType::groq, "groq"},
      {ProviderType::ollama, "ollama"},
      {ProviderType::openRouter, "openrouter"},
      {ProviderType::togetherAI, "togetherai"},
      {ProviderType::xAI, "xai"},
      {ProviderType::googleAI, "googleai"},
      {ProviderType::mistral, "mistral"},
      {ProviderType::deepSeek, "deepseek"},
      {ProviderType::perplexity, "perplexity"},
      {ProviderType::azureOpenAI, "azure-openai"},
  }};
};

/// What is fixed for a kind of backend.
struct ProviderTypeInfo {
  const char* displayName;
  const char* defaultSlug;  ///< nullptr: made from the name of the configuration
  const char* defaultBaseURL;
  const char* defaultModel;  ///< may be empty
  const char* keyPage;       ///< where a user gets a key; may be empty
};

const ProviderTypeInfo& info(ProviderType type);

}  // namespace quillmark
