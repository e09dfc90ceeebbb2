#include "providers/BaseProvider.h"

#include "base/Text.h"

namespace quillmark {

ChatDialect BaseProvider::dialect() const {
  ChatDialect dialect;
  dialect.chatUrl = baseURL() + "/chat/completions";
  dialect.modelsUrl = baseURL() + "/models";
  dialect.authorization = text::trimmed(apiKey());
  dialect.streamEndLine = "BaseProvider streaming completed";
  dialect.alert = [name = name()](std::string problem) { return AlertKind::issue(name, std::move(problem)); };
  return dialect;
}

}  // namespace quillmark
