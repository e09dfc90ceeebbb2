#include "commands/Command.h"

#include "base/Log.h"
#include "base/Slug.h"
#include "commands/PromptFactory.h"

namespace quillmark {

Command Command::make(std::string name, std::optional<UserAction> type, std::optional<std::string> content,
                      std::optional<std::string> model, CommandCategory category) {
  Command command;
  command.id = Uuid::random();
  command.slug = slugify(name);
  command.name = std::move(name);
  command.content = std::move(content);
  command.model = std::move(model);
  command.category = category;
  if (!type) {
    command.hasCustomName = true;
    return command;
  }
  command.type = std::move(*type);
  command.behavior = info(command.type.kind).behavior;
  command.hasCustomName = !usesActionTitle(command.type);
  return command;
}

Command Command::make(const UserAction& action) {
  Command command = make(action.title(), action, PromptFactory::promptText(action), action.model(), action.category());
  command.hasCustomName = info(action.kind).items() && action.parameter;
  return command;
}

std::string Command::displayName() const { return !hasCustomName && usesActionTitle(type) ? type.title() : name; }

void Command::editName(std::string text) {
  if (!hasCustomName && text != displayName()) {
    log("Marked command '" + name + "' as having custom name due to user edit");
    hasCustomName = true;
  }
  name = std::move(text);
}

std::string_view Command::icon() const {
  return category == CommandCategory::mainAction ? type.icon() : quillmark::icon(category);
}

std::string Command::shortcutName() const {
  return type.kind == ActionCase::customPrompt ? id.toString() : type.identifier();
}

bool usesActionTitle(const UserAction& type) {
  const bool isOneItem = info(type.kind).items() && type.parameter;
  return type.kind != ActionCase::customPrompt && !isOneItem;
}

Json toJson(const Command& command) {
  Json json = {{"name", command.name}};
  if (command.id != Uuid::processDefault()) {
    json["id"] = command.id.toString();
  }
  if (command.content) {
    json["content"] = *command.content;
  }
  if (command.provider) {
    json["provider"] = command.provider->toString();
  }
  if (command.model) {
    json["model"] = *command.model;
  }
  if (command.behavior) {
    json["behavior"] = rawValue(*command.behavior);
  }
  if (command.category != CommandCategory::customAction) {
    json["category"] = rawValue(command.category);
  }
  if (command.type != ActionCase::customPrompt) {
    json["type"] = toJson(command.type);
  }
  if (!command.enabled) {
    json["enabled"] = false;
  }
  if (command.usageCount != 0) {
    json["usageCount"] = command.usageCount;
  }
  if (!command.slug.empty()) {
    json["slug"] = command.slug;
  }
  if (command.hasCustomName) {
    json["hasCustomName"] = true;
  }
  return json;
}

Command commandFromJson(const Json& json, const std::string& path) {
  const JsonObject object(json, path);
  Command command;
  command.id = object.valueOr("id", Uuid::processDefault());
  command.name = object.required<std::string>("name");
  command.content = object.optional<std::string>("content");
  command.provider = object.optional<Uuid>("provider");
  command.model = object.optional<std::string>("model");
  command.behavior = object.optional<ActionBehavior>("behavior");
  command.category = object.valueOr("category", CommandCategory::customAction);
  command.type = object.valueOr("type", UserAction(ActionCase::customPrompt));
  command.enabled = object.valueOr("enabled", true);
  command.usageCount = object.valueOr<std::int64_t>("usageCount", 0);
  command.slug = object.valueOr<std::string>("slug", "");
  command.hasCustomName = object.valueOr("hasCustomName", false);
  return command;
}

}  // namespace quillmark
