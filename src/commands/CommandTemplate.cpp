#include "commands/CommandTemplate.h"

#include <string_view>
#include <utility>

#include "base/Text.h"

namespace quillmark {
namespace {

CommandCategory categoryCalled(const std::string& name) {
  using enum CommandCategory;
  constexpr std::pair<std::string_view, CommandCategory> names[] = {
      {"main action", mainAction},
      {"mainaction", mainAction},
      {"writing", writing},
      {"rewrite", rewrite},
      {"seo", seo},
      {"seo & copywriting", seo},
      {"development", development},
      {"prompting", prompting},
  };
  const std::string wanted = text::lowerCased(name);
  for (const auto& [known, category] : names) {
    if (known == wanted) {
      return category;
    }
  }
  return customAction;
}

}  // namespace

Command CommandTemplate::toCommand() const {
  Command command = Command::make(title, std::nullopt, prompt ? prompt : content, std::nullopt,
                                  categoryCalled(category.value_or("")));
  if (slug && !slug->empty()) {
    command.slug = *slug;
  }
  return command;
}

CommandTemplate commandTemplateFromJson(const Json& json, const std::string& path) {
  const JsonObject object(json, path);
  CommandTemplate result;
  result.id = object.required<std::string>("id");
  result.slug = object.optional<std::string>("slug");
  result.title = object.required<std::string>("title");
  result.description = object.optional<std::string>("description");
  result.content = object.optional<std::string>("content");
  result.prompt = object.optional<std::string>("prompt");
  result.category = object.optional<std::string>("category");
  result.tags = object.requiredArray<std::string>("tags", decodeJson<std::string>);
  result.createdAt = object.required<std::string>("created_at");
  result.updatedAt = object.required<std::string>("updated_at");
  result.profileId = object.optional<std::string>("profile_id");
  result.isPublic = object.required<bool>("is_public");
  return result;
}

}  // namespace quillmark
