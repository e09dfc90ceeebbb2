#pragma once

#include <memory>

#include "providers/AIProvider.h"
#include "providers/ProviderEnvironment.h"

namespace quillmark {

/// Turns a stored configuration into a live provider. The class depends on the type alone.
class ProviderFactory {
 public:
  explicit ProviderFactory(const ProviderEnvironment& environment) : environment_(environment) {}
  virtual ~ProviderFactory() = default;
  ProviderFactory(const ProviderFactory&) = delete;
  ProviderFactory& operator=(const ProviderFactory&) = delete;

  /// Never null.
  virtual std::unique_ptr<AIProvider> makeProvider(const ProviderConfig& config) const;

 private:
  ProviderEnvironment environment_;
};

}  // namespace quillmark
