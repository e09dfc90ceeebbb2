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
  std::string name;                        ///< as stored; lists show displayName()
  std::optional<std::string> content;      ///< prompt template; absent: the built-in text of `type`
  std::optional<Uuid> provider;            ///< id of a ProviderConfig; absent: the default provider
  std::optional<std::string> model;        ///< absent: the provider's default model
  std::optional<ActionBehavior> behavior;  ///< absent: the general default
  CommandCategory category = CommandCategory::customAction;
  UserAction type;
  bool enabled = true;  ///< false: no menu and no search offers it; shortcuts and URLs still run it
  std::int64_t usageCount = 0;
  std::string slug;            ///< slug of the name when it was last set
  bool hasCustomName = false;  ///< true: the name is the user's own and is never localised

  /// A new command; without a type it is a custom prompt.
  static Command make(std::string name, std::optional<UserAction> type, std::optional<std::string> content,
                      std::optional<std::string> model, CommandCategory category);
  /// A new command for a built-in action, with the action's prompt text, title and category.
  static Command make(const UserAction& action);

  std::string displayName() const;
  /// Called by the name's editor, which shows displayName(), for each change of its text: from the first real change on
  /// the name is the user's own.
  void editName(std::string text);
  /// Symbol name.
  std::string_view icon() const;
  /// The name under which the keyboard shortcut is stored: one per custom prompt, and one for all commands of any other
  /// action.
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
