#include "commands/ConfigurableItem.h"

namespace quillmark {

Json toJson(const ConfigurableItem& item) {
  Json json = {{"id", item.id},
               {"name", item.name},
               {"isEnabled", item.isEnabled},
               {"order", item.order},
               {"isCustom", item.isCustom}};
  if (item.nameKey) {
    json["nameKey"] = *item.nameKey;
  }
  return json;
}

ConfigurableItem configurableItemFromJson(const Json& json, const std::string& path) {
  const JsonObject object(json, path);
  return {object.required<std::string>("id"),      object.required<std::string>("name"),
          object.optional<std::string>("nameKey"), object.required<bool>("isEnabled"),
          object.required<std::int64_t>("order"),  object.required<bool>("isCustom")};
}

}  // namespace quillmark
