#pragma once

#include "platform/UserDefaults.h"
#include "providers/CompatibleChatProvider.h"

namespace quillmark {

/// The hosted service, which needs no key of the user's. `apiKey` and `baseURL` of the configuration play no part.
class QuillmarkProvider : public CompatibleChatProvider {
 public:
  QuillmarkProvider(const ProviderConfig& config, const ProviderEnvironment& environment);

 protected:
  ChatDialect dialect() const override;

 private:
  Setting<std::string> serviceToken_;
  Setting<std::string> appVersion_;
};

}  // namespace quillmark
