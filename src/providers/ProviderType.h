#pragma once

#include <memory>
#include <string_view>

#include "base/RawValue.h"

namespace quillmark {

class AIProvider;
struct ProviderConfig;
struct ProviderEnvironment;

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

/// Everything that is fixed for a kind of backend.
struct ProviderTypeInfo {
  ProviderType key;
  std::string_view raw;
  const char* displayName;
  const char* defaultSlug;  ///< nullptr: made from the name of the configuration
  const char* defaultBaseURL;
  const char* defaultModel;  ///< may be empty
  const char* keyPage;       ///< where a user gets a key; may be empty
  std::unique_ptr<AIProvider> (*make)(const ProviderConfig& config, const ProviderEnvironment& environment);
};

template <>
struct RawValues<ProviderType> {
  static const EnumTable<ProviderTypeInfo> table;
};

inline const ProviderTypeInfo& info(ProviderType type) { return RawValues<ProviderType>::table[type]; }

}  // namespace quillmark
