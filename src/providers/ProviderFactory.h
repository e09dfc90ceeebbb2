#pragma once

#include <memory>

#include "providers/AIProvider.h"
#include "providers/ProviderEnvironment.h"

namespace quillmark {

/// Turns a stored configuration into a live provider. The class depends on the type alone.
class ProviderFactory {
 public:
  explicit ProviderFactory(const ProviderEnvironment& environment) : environment_(environment) {}
  ProviderFactory(const ProviderFactory&) = delete;
  ProviderFactory& operator=(const ProviderFactory&) = delete;

  /// Never null.
  std::unique_ptr<AIProvider> makeProvider(const ProviderConfig& config) const {
    return info(config.providerType).make(config, environment_);
  }

 private:
  ProviderEnvironment environment_;
};

}  // namespace quillmark
