#include "providers/VendorProviders.h"

#include <algorithm>

#include "base/Text.h"

namespace quillmark {
namespace {

std::vector<GenericModelData> chatModelsOfArray(const Json& json) {
  auto entries = modelDataFromJson(json);
  std::erase_if(entries, [](const auto& entry) { return entry.type != "chat"; });
  return entries;
}

}  // namespace

ChatDialect GroqProvider::dialect() const {
  ChatDialect dialect = BaseProvider::dialect();
  dialect.streamEndLine = "Groq streaming completed";
  dialect.listing.logsCount = false;
  return dialect;
}

ChatDialect OllamaProvider::dialect() const {
  ChatDialect dialect = BaseProvider::dialect();
  dialect.streamEndLine = "Ollama streaming completed";
  dialect.listing.logsCount = false;
  return dialect;
}

ChatDialect OpenRouterProvider::dialect() const {
  ChatDialect dialect = BaseProvider::dialect();
  dialect.streamEndLine = "OpenRouter streaming completed";
  return dialect;
}

ChatDialect TogetherAIProvider::dialect() const {
  ChatDialect dialect = BaseProvider::dialect();
  dialect.streamEndLine = "TogetherAI streaming completed";
  dialect.listing.decode = chatModelsOfArray;
  return dialect;
}

ChatDialect AzureProvider::dialect() const {
  ChatDialect dialect = BaseProvider::dialect();
  dialect.chatUrl = baseURL();
  dialect.modelsUrl = std::nullopt;
  dialect.streamEndLine = "AzureProvider streaming completed";
  return dialect;
}

ChatDialect GoogleAIProvider::dialect() const {
  ChatDialect dialect = BaseProvider::dialect();
  dialect.chatUrl = baseURL() + "/openai/chat/completions";
  dialect.modelsUrl = baseURL() + "/openai/models";
  dialect.streamEndLine = "Google AI streaming completed";
  dialect.modelName = [](const std::string& model) { return text::replacingAll(model, "models/", ""); };
  dialect.chatRecord = {"GoogleChatResult", googleChatResultFromJson};
  dialect.listing.failureLabel = "";
  return dialect;
}

}  // namespace quillmark
