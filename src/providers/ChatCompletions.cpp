#include "providers/ChatCompletions.h"

#include "base/Text.h"

namespace quillmark {
namespace {

GenericChatResult::Choice choiceFromJson(const Json& json, const std::string& path) {
  const JsonObject object(json, path);
  GenericChatResult::Choice choice;
  choice.index = object.required<std::int64_t>("index");
  choice.finishReason = object.optional<std::string>("finish_reason");
  const JsonObject message = object.requiredObject("message");
  choice.message = {message.required<std::string>("role"), message.optional<std::string>("content"),
                    message.optional<std::string>("refusal"), message.optional<std::string>("reasoning")};
  return choice;
}

std::optional<std::int64_t> tokensOfDetails(const JsonObject& usage, const char* details, const char* key) {
  const Json* json = usage.find(details);
  return json == nullptr ? std::nullopt : JsonObject(*json, usage.pathOf(details)).optional<std::int64_t>(key);
}

GenericChatResult::Usage usageFromJson(const Json& json) {
  const JsonObject object(json, "usage");
  return {object.optional<std::int64_t>("prompt_tokens"), object.optional<std::int64_t>("completion_tokens"),
          object.optional<std::int64_t>("total_tokens"),
          tokensOfDetails(object, "prompt_tokens_details", "cached_tokens"),
          tokensOfDetails(object, "completion_tokens_details", "reasoning_tokens")};
}

GenericModelData modelFromJson(const Json& json, const std::string& path) {
  const JsonObject object(json, path);
  return {object.required<std::string>("id"),           object.optional<std::string>("name"),
          object.optional<std::string>("display_name"), object.optional<std::int64_t>("context_length"),
          object.optional<std::string>("type"),         object.optional<bool>("enabled")};
}

}  // namespace

Json chatQuery(const std::string& text, const std::string& systemPrompt, const std::string& model, bool stream) {
  Json messages = Json::array();
  if (!systemPrompt.empty()) {
    messages.push_back({{"role", "system"}, {"content", systemPrompt}});
  }
  messages.push_back({{"role", "user"}, {"content", text}});
  return {{"messages", std::move(messages)}, {"model", model}, {"stream", stream}};
}

std::string withoutBraces(std::string answer) {
  return text::replacingAll(text::replacingAll(std::move(answer), "{{", ""), "}}", "");
}

GenericChatResult genericChatResultFromJson(const Json& json) {
  const JsonObject object(json);
  GenericChatResult result;
  result.id = object.optional<std::string>("id");
  result.provider = object.optional<std::string>("provider");
  result.model = object.required<std::string>("model");
  result.object = object.required<std::string>("object");
  result.created = object.required<double>("created");
  result.choices = object.requiredArray<GenericChatResult::Choice>("choices", choiceFromJson);
  if (const Json* usage = object.find("usage")) {
    result.usage = usageFromJson(*usage);
  }
  result.systemFingerprint = object.optional<std::string>("system_fingerprint");
  result.nativeFinishReason = object.optional<std::string>("native_finish_reason");
  return result;
}

GenericChatResult googleChatResultFromJson(const Json& json) {
  const JsonObject object(json);
  GenericChatResult result;
  result.id = object.optional<std::string>("id");
  result.object = object.required<std::string>("object");
  result.created = object.required<double>("created");
  result.model = object.required<std::string>("model");
  result.choices = object.requiredArray<GenericChatResult::Choice>("choices", choiceFromJson);
  if (object.find("usage") != nullptr) {
    const JsonObject usage = object.requiredObject("usage");
    result.usage = {usage.optional<std::int64_t>("prompt_tokens"), usage.optional<std::int64_t>("completion_tokens"),
                    usage.optional<std::int64_t>("total_tokens")};
  }
  return result;
}

std::string describe(const GenericChatResult& result) {
  Json json = {{"model", result.model}, {"object", result.object}, {"created", result.created}};
  const auto add = [](Json& to, const char* key, const auto& value) {
    if (value) {
      to[key] = *value;
    }
  };
  add(json, "id", result.id);
  add(json, "provider", result.provider);
  add(json, "system_fingerprint", result.systemFingerprint);
  add(json, "native_finish_reason", result.nativeFinishReason);
  Json& choices = json["choices"] = Json::array();
  for (const auto& choice : result.choices) {
    Json entry = {{"index", choice.index}, {"role", choice.message.role}};
    add(entry, "content", choice.message.content);
    add(entry, "refusal", choice.message.refusal);
    add(entry, "reasoning", choice.message.reasoning);
    add(entry, "finish_reason", choice.finishReason);
    choices.push_back(std::move(entry));
  }
  if (result.usage) {
    Json& usage = json["usage"] = Json::object();
    add(usage, "prompt_tokens", result.usage->promptTokens);
    add(usage, "completion_tokens", result.usage->completionTokens);
    add(usage, "total_tokens", result.usage->totalTokens);
    add(usage, "cached_tokens", result.usage->cachedTokens);
    add(usage, "reasoning_tokens", result.usage->reasoningTokens);
  }
  return toText(json);
}

ProviderModel GenericModelData::toModel(ProviderType providerType) const {
  ProviderModel model;
  model.id = Uuid::random();
  model.identifier = id;
  model.providerType = providerType;
  model.name = name ? *name : displayName.value_or(id);
  model.contextLength = contextLength;
  return model;
}

std::vector<GenericModelData> modelDataFromJson(const Json& json) {
  return decodeArray<GenericModelData>(json, modelFromJson);
}

std::vector<GenericModelData> genericModelResponseFromJson(const Json& json) {
  return JsonObject(json).requiredArray<GenericModelData>("data", modelFromJson);
}

}  // namespace quillmark
