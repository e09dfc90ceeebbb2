#include "providers/QuillmarkProvider.h"

namespace quillmark {

QuillmarkProvider::QuillmarkProvider(const ProviderConfig& config, const ProviderEnvironment& environment)
    : CompatibleChatProvider(config, ProviderType::quillMark, environment), appVersion_(environment.defaults) {}

ChatDialect QuillmarkProvider::dialect() const {
  const std::string root = environment().appConfig.serviceRoot();
  ChatDialect dialect;
  dialect.chatUrl = root + "/api/app/completion";
  dialect.modelsUrl = root + "/api/app/models";
  dialect.authorization = environment().appConfig.serviceToken.get();
  dialect.extraHeaders = {{"X-AppVersion", appVersion_.get()}};
  dialect.stream = ChatDialect::Stream::plainText;
  dialect.streamEndLine = "Streaming completed";
  dialect.alert = AlertKind::unknownError;
  return dialect;
}

}  // namespace quillmark
