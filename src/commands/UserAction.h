#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/Json.h"
#include "commands/ActionBehavior.h"
#include "commands/CommandCategory.h"

namespace quillmark {

/// The built-in actions, in the order of every listing.
enum class ActionCase {
  fixGrammar,
  improveWriting,
  simplifyLanguage,
  makeLonger,
  makeShorter,
  summarize,
  explainThis,
  improvePrompt,
  generatePrompt,
  executePrompt,
  changeTone,
  translate,
  freeStyle,
  titleCase,
  asEmojis,
  translateToYoda,
  asEmail,
  asTweet,
  humanizeText,
  customPrompt,
};

/// A list of the user's whose items an action can be offered for.
enum class ItemList { languages, tones };

/// The parameter that an action takes besides the text.
struct ActionParameter {
  std::string_view placeholder;     ///< the placeholder it fills in a template
  std::optional<ItemList> items{};  ///< the list to choose from; absent: the user types it
  const char* itemTitle = nullptr;  ///< English title of the command for one item, whose name replaces "{}"
  const char* menuTitle = nullptr;  ///< English title of the submenu with all items
};

/// Everything that is fixed for a built-in action except its prompt (PromptFactory).
struct ActionInfo {
  ActionCase key;
  std::string_view raw;
  const char* title;      ///< English
  std::string_view icon;  ///< symbol name
  CommandCategory category;
  const char* model = nullptr;  ///< nullptr: the provider's default
  /// nullptr: none. An action with a parameter is only offered with a value for it.
  const ActionParameter* parameter = nullptr;
  std::optional<ActionBehavior> behavior{};  ///< of a new command; absent: the general default
  bool inCatalogue = true;                   ///< whether it is a built-in entry of the template catalogue

  constexpr bool takesParameter() const { return parameter != nullptr; }
  /// The list for whose items the action is offered.
  constexpr std::optional<ItemList> items() const { return takesParameter() ? parameter->items : std::nullopt; }
};

template <>
struct RawValues<ActionCase> {
  static const EnumTable<ActionInfo> table;
};

inline const ActionInfo& info(ActionCase action) { return RawValues<ActionCase>::table[action]; }

/// A built-in action. Three cases take a parameter: `changeTone` the name of a tone, `translate` the name of a
/// language, `freeStyle` the task that the user typed.
struct UserAction {
  ActionCase kind = ActionCase::customPrompt;
  std::optional<std::string> parameter;

  // An action without a parameter is written as its case.
  UserAction(ActionCase actionCase) : kind(actionCase) {}  // NOLINT(google-explicit-constructor)
  UserAction(ActionCase actionCase, std::string name) : kind(actionCase), parameter(std::move(name)) {}
  UserAction() = default;

  static UserAction changeTone(std::string tone) { return {ActionCase::changeTone, std::move(tone)}; }
  static UserAction translate(std::string language) { return {ActionCase::translate, std::move(language)}; }
  static UserAction freeStyle(std::string task) { return {ActionCase::freeStyle, std::move(task)}; }

  /// The name of the case, with or without a parameter.
  std::string identifier() const { return std::string(rawValue(kind)); }
  /// In the interface language.
  std::string title() const;
  std::string englishTitle() const { return info(kind).title; }
  /// Symbol name.
  std::string_view icon() const { return info(kind).icon; }
  CommandCategory category() const { return info(kind).category; }
  /// The model of a command created from this action.
  std::optional<std::string> model() const;
  /// Whether it represents a list of actions, one for each item.
  bool isExpanded() const { return info(kind).items() && !parameter; }

  friend bool operator==(const UserAction&, const UserAction&) = default;
};

/// The commands that a new user starts with; the last two are filteredActions().
std::span<const ActionCase> baseActions();
/// The built-in entries of the template catalogue.
std::vector<ActionCase> catalogueActions();
/// `translate` and `changeTone`: stored once, offered for each language or tone.
std::span<const ActionCase> filteredActions();

/// `{"translate":{"_0":"de"}}`, `{"fixGrammar":{}}`.
Json toJson(const UserAction& action);
UserAction userActionFromJson(const Json& json, const std::string& path = {});

template <>
UserAction decodeJson<UserAction>(const Json& value, const std::string& path);

}  // namespace quillmark
