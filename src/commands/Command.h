#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "base/Json.h"
#include "base/Uuid.h"
#include "commands/ActionBehavior.h"
#include "commands/CommandCategory.h"
#include "commands/UserAction.h"

namespace quillmark {

/// One thing that a user can run on selected text.
struct Command {
  Uuid id;
  std::string name;                        ///< as stored; what a list shows is displayName()
  std::optional<std::string> content;      ///< prompt template; absent: the built-in text of `type`
  std::optional<Uuid> provider;            ///< id of a ProviderConfig; absent: the default provider
  std::optional<std::string> model;        ///< absent: the provider's default model
  std::optional<ActionBehavior> behavior;  ///< absent: the general default
  CommandCategory category = CommandCategory::customAction;
  UserAction type;
  bool enabled = true;  ///< false: no menu and no search offers it; shortcuts and URLs still run it
  std::int64_t usageCount = 0;
  std::string slug;            ///< of the name at the time it was last set
  bool hasCustomName = false;  ///< true: the name is the user's own and never follows the interface language

  /// A new command; without a type it is a custom prompt.
  static Command make(std::string name, std::optional<UserAction> type, std::optional<std::string> content,
                      std::optional<std::string> model, CommandCategory category);
  /// A new command for a built-in action, with the action's prompt text, title and category.
  static Command make(const UserAction& action);

  std::string displayName() const;
  /// What an editor of the name does with each change of its text, which shows displayName(): the name is the user's
  /// own from the first real change on.
  void editName(std::string text);
  /// Symbol name.
  std::string_view icon() const;
  /// The name under which the keyboard shortcut is stored: one for each custom prompt, one for all commands of any
  /// other action.
  std::string shortcutName() const;

  friend bool operator==(const Command&, const Command&) = default;
};

/// Whether a command of this type shows the localised title of its action until the user renames it.
bool usesActionTitle(const UserAction& type);

/// Leaves out what holds its default; an `id` that equals Uuid::processDefault() is left out too.
Json toJson(const Command& command);
/// Throws DecodingError. Only `name` is required.
Command commandFromJson(const Json& json, const std::string& path = {});

}  // namespace quillmark
