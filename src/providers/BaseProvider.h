#pragma once

#include "providers/CompatibleChatProvider.h"

namespace quillmark {

/// Any backend that speaks the chat completions dialect under its base URL. The URL is used as it is.
class BaseProvider : public CompatibleChatProvider {
 public:
  BaseProvider(const ProviderConfig& config, const ProviderEnvironment& environment)
      : BaseProvider(config, config.providerType, environment) {}

 protected:
  BaseProvider(const ProviderConfig& config, ProviderType type, const ProviderEnvironment& environment)
      : CompatibleChatProvider(config, type, environment) {}

  ChatDialect dialect() const override;
};

}  // namespace quillmark
