#pragma once

#include "platform/RunningVersion.h"
#include "providers/CompatibleChatProvider.h"

namespace quillmark {

/// The hosted service, which needs no key of the user's. `apiKey` and `baseURL` of the configuration are ignored.
class QuillmarkProvider : public CompatibleChatProvider {
 public:
  QuillmarkProvider(const ProviderConfig& config, const ProviderEnvironment& environment);

 protected:
  ChatDialect dialect() const override;

 private:
  RunningVersion appVersion_;
};

}  // namespace quillmark
