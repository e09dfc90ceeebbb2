#include "providers/OpenAIRecords.h"

#include "base/Text.h"

namespace quillmark {
namespace {

/// The message of an answer, and the piece of one in a stream, have the same optional texts.
std::optional<std::string> contentOf(const JsonObject& message) {
  for (const char* other : {"refusal", "reasoning", "reasoning_content"}) {
    (void)message.optional<std::string>(other);
  }
  return message.optional<std::string>("content");
}

ChatResult::Choice choiceFromJson(const Json& json, const std::string& path) {
  const JsonObject object(json, path);
  (void)object.required<std::int64_t>("index");
  const JsonObject message = object.requiredObject("message");
  (void)message.required<std::string>("role");
  return {contentOf(message), object.required<std::string>("finish_reason")};
}

ChatStreamResult::Choice streamChoiceFromJson(const Json& json, const std::string& path) {
  const JsonObject object(json, path);
  (void)object.required<std::int64_t>("index");
  (void)object.optional<std::string>("finish_reason");
  const JsonObject delta = object.requiredObject("delta");
  (void)delta.optional<std::string>("role");
  return {contentOf(delta)};
}

std::string modelIdFromJson(const Json& json, const std::string& path) {
  const JsonObject object(json, path);
  (void)object.required<double>("created");
  (void)object.required<std::string>("object");
  (void)object.required<std::string>("owned_by");
  return object.required<std::string>("id");
}

/// A text, or several to be joined by line feeds.
std::string messageOf(const JsonObject& error) {
  const Json* message = error.find("message");
  if (message != nullptr && message->is_array()) {
    return text::joined(error.requiredArray<std::string>("message", decodeJson<std::string>), "\n");
  }
  return error.required<std::string>("message");
}

std::string openAIErrorFromJson(const Json& json) {
  const JsonObject object(json);
  const JsonObject error = object.requiredObject("error");
  (void)error.required<std::string>("type");
  (void)error.optional<std::string>("param");
  (void)error.optional<std::string>("code");
  return messageOf(error);
}

std::string geminiErrorFromJson(const Json& json, const std::string& path) {
  const JsonObject object(json, path);
  const JsonObject error = object.requiredObject("error");
  (void)error.required<std::int64_t>("code");
  (void)error.required<std::string>("status");
  return error.required<std::string>("message");
}

}  // namespace

ChatResult chatResultFromJson(const Json& json) {
  const JsonObject object(json);
  (void)object.required<std::string>("object");
  (void)object.required<std::int64_t>("created");
  (void)object.required<std::string>("system_fingerprint");
  return {object.required<std::string>("id"), object.required<std::string>("model"),
          object.requiredArray<ChatResult::Choice>("choices", choiceFromJson)};
}

std::string describe(const ChatResult& result) {
  Json json = {{"id", result.id}, {"model", result.model}, {"choices", Json::array()}};
  for (const auto& choice : result.choices) {
    json["choices"].push_back(
        {{"content", choice.content ? Json(*choice.content) : Json(nullptr)}, {"finish_reason", choice.finishReason}});
  }
  return toText(json);
}

ChatStreamResult chatStreamResultFromJson(const Json& json) {
  const JsonObject object(json);
  for (const char* key : {"id", "object", "model", "system_fingerprint"}) {
    (void)object.required<std::string>(key);
  }
  (void)object.required<double>("created");
  return {object.requiredArray<ChatStreamResult::Choice>("choices", streamChoiceFromJson)};
}

std::vector<std::string> modelsResultFromJson(const Json& json) {
  const JsonObject object(json);
  (void)object.required<std::string>("object");
  return object.requiredArray<std::string>("data", modelIdFromJson);
}

std::optional<std::string> apiErrorMessage(const Json& json) {
  try {
    if (!json.is_array()) {
      return openAIErrorFromJson(json);
    }
    const auto messages = decodeArray<std::string>(json, geminiErrorFromJson);
    return messages.empty() ? std::nullopt : std::optional(messages.front());
  } catch (const DecodingError&) {
    return std::nullopt;
  }
}

}  // namespace quillmark
