#include "providers/AnthropicRecords.h"

namespace quillmark {
namespace {

constexpr int maxTokens = 4096;

std::optional<std::string> textOfBlock(const Json& json, const std::string& path) {
  const JsonObject object(json, path);
  const bool isText = object.required<std::string>("type") == "text";
  return isText ? std::optional(object.required<std::string>("text")) : std::nullopt;
}

}  // namespace

Json messageParameter(const std::string& text, const std::string& systemPrompt, const std::string& model, bool stream) {
  return {{"model", model},
          {"messages", Json::array({{{"role", "user"}, {"content", text}}})},
          {"max_tokens", maxTokens},
          {"system", systemPrompt},
          {"stream", stream}};
}

MessageResponse messageResponseFromJson(const Json& json) {
  const JsonObject object(json);
  for (const char* key : {"id", "type", "model", "role"}) {
    (void)object.required<std::string>(key);
  }
  for (const char* key : {"stop_reason", "stop_sequence"}) {
    (void)object.optional<std::string>(key);
  }
  const JsonObject usage = object.requiredObject("usage");
  (void)usage.required<std::int64_t>("output_tokens");
  for (const char* key : {"input_tokens", "cache_creation_input_tokens", "cache_read_input_tokens"}) {
    (void)usage.optional<std::int64_t>(key);
  }
  const Json& content = object.present("content");
  if (!content.is_array()) {
    throw DecodingError(object.pathOf("content"), "is not an array");
  }
  return {content.empty() ? std::nullopt : textOfBlock(content.front(), object.pathOf("content") + "[0]")};
}

MessageStreamResponse messageStreamResponseFromJson(const Json& json) {
  const JsonObject object(json);
  (void)object.required<std::string>("type");
  (void)object.optional<std::int64_t>("index");
  if (object.find("delta") == nullptr) {
    return {};
  }
  const JsonObject delta = object.requiredObject("delta");
  for (const char* key : {"type", "partial_json", "stop_reason", "stop_sequence"}) {
    (void)delta.optional<std::string>(key);
  }
  return {delta.optional<std::string>("text")};
}

std::optional<std::string> anthropicErrorMessage(const std::string& body) {
  try {
    const Json json = parseJson(body);
    const JsonObject object(json);
    (void)object.required<std::string>("type");
    const JsonObject error = object.requiredObject("error");
    (void)error.required<std::string>("type");
    return error.required<std::string>("message");
  } catch (const DecodingError&) {
    return std::nullopt;
  }
}

}  // namespace quillmark
