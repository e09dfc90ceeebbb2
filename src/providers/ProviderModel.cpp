#include "providers/ProviderModel.h"

namespace quillmark {

Json toJson(const ProviderModel& model) {
  Json json = {{"identifier", model.identifier}, {"providerType", rawValue(model.providerType)}, {"name", model.name}};
  if (model.id != Uuid::processDefault()) {
    json["id"] = model.id.toString();
  }
  if (model.enabled) {
    json["enabled"] = *model.enabled;
  }
  if (model.contextLength) {
    json["contextLength"] = *model.contextLength;
  }
  return json;
}

ProviderModel providerModelFromJson(const Json& json, const std::string& path) {
  const JsonObject object(json, path);
  return {object.valueOr("id", Uuid::processDefault()),
          object.required<std::string>("identifier"),
          object.required<ProviderType>("providerType"),
          object.required<std::string>("name"),
          object.optional<bool>("enabled"),
          object.optional<std::int64_t>("contextLength")};
}

}  // namespace quillmark
