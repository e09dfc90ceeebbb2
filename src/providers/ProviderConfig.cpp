#include "providers/ProviderConfig.h"

#include <utility>

#include "base/Slug.h"

namespace quillmark {

ProviderConfig ProviderConfig::make(Inputs inputs) {
  const ProviderTypeInfo& type = info(inputs.providerType);
  ProviderConfig config;
  config.id = inputs.id;
  config.providerType = inputs.providerType;
  config.slug = inputs.slug.value_or(type.defaultSlug != nullptr ? type.defaultSlug : slugify(inputs.name));
  config.name = std::move(inputs.name);
  config.apiKey = std::move(inputs.apiKey);
  config.baseURL = inputs.baseURL.value_or(type.defaultBaseURL);
  config.defaultModel = inputs.defaultModel.value_or(type.defaultModel);
  config.enabled = inputs.enabled;
  config.streamingEnabled = inputs.streamingEnabled;
  return config;
}

Json toJson(const ProviderConfig& config) {
  Json json = {{"providerType", rawValue(config.providerType)}};
  if (config.id != Uuid::processDefault()) {
    json["id"] = config.id.toString();
  }
  const std::pair<const char*, const std::string&> texts[] = {
      {"slug", config.slug},       {"name", config.name},
      {"apiKey", config.apiKey},   {"organization", config.organization},
      {"baseURL", config.baseURL}, {"defaultModel", config.defaultModel},
  };
  for (const auto& [key, value] : texts) {
    if (!value.empty()) {
      json[key] = value;
    }
  }
  if (!config.enabled) {
    json["enabled"] = false;
  }
  if (!config.streamingEnabled) {
    json["streamingEnabled"] = false;
  }
  return json;
}

ProviderConfig providerConfigFromJson(const Json& json, const std::string& path) {
  const JsonObject object(json, path);
  ProviderConfig config;
  config.id = object.valueOr("id", Uuid::processDefault());
  config.slug = object.valueOr<std::string>("slug", "");
  config.providerType = object.required<ProviderType>("providerType");
  config.name = object.valueOr<std::string>("name", "");
  config.apiKey = object.valueOr<std::string>("apiKey", "");
  config.organization = object.valueOr<std::string>("organization", "");
  config.baseURL = object.valueOr<std::string>("baseURL", "");
  config.defaultModel = object.valueOr<std::string>("defaultModel", "");
  config.enabled = object.valueOr("enabled", true);
  config.streamingEnabled = object.valueOr("streamingEnabled", true);
  return config;
}

}  // namespace quillmark
