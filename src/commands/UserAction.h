#pragma once

#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "base/Json.h"
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

template <>
struct RawValues<ActionCase> {
  static constexpr std::array<std::pair<ActionCase, std::string_view>, 20> table{{
      {ActionCase::fixGrammar, "fixGrammar"},
      {ActionCase::improveWriting, "improveWriting"},
      {ActionCase::simplifyLanguage, "simplifyLanguage"},
      {ActionCase::makeLonger, "makeLonger"},
      {ActionCase::makeShorter, "makeShorter"},
      {ActionCase::summarize, "summarize"},
      {ActionCase::explainThis, "explainThis"},
      {ActionCase::improvePrompt, "improvePrompt"},
      {ActionCase::generatePrompt, "generatePrompt"},
      {ActionCase::executePrompt, "executePrompt"},
      {ActionCase::changeTone, "changeTone"},
      {ActionCase::translate, "translate"},
      {ActionCase::freeStyle, "freeStyle"},
      {ActionCase::titleCase, "titleCase"},
      {ActionCase::asEmojis, "asEmojis"},
      {ActionCase::translateToYoda, "translateToYoda"},
      {ActionCase::asEmail, "asEmail"},
      {ActionCase::asTweet, "asTweet"},
      {ActionCase::humanizeText, "humanizeText"},
      {ActionCase::customPrompt, "customPrompt"},
  }};
};

/// A built-in action. Three cases take a parameter: `changeTone` the name of a tone, `translate` the name of a
/// language, `freeStyle` the task that the user typed.
struct UserAction {
  ActionCase kind = ActionCase::customPrompt;
  std::optional<std::string> parameter;

  // An action without a parameter is written as its case.
  UserAction(ActionCase actionCase) : kind(actionCase) {}  // NOLINT(google-explicit-constructor)
  UserAction() = default;

  static UserAction changeTone(std::string tone);
  static UserAction translate(std::string language);
  static UserAction freeStyle(std::string task);

  /// The name of the case, with or without a parameter.
  std::string identifier() const { return std::string(rawValue(kind)); }
  /// In the interface language.
  std::string title() const;
  std::string englishTitle() const;
  /// Symbol name.
  std::string_view icon() const;
  CommandCategory category() const;
  /// The model that a command made from this action asks for.
  std::optional<std::string> model() const;

  friend bool operator==(const UserAction&, const UserAction&) = default;
};

/// The commands that a new user starts with; the last two are filteredActions().
std::span<const ActionCase> baseActions();
/// The built-in entries of the template catalogue.
std::span<const ActionCase> catalogueActions();
/// `translate` and `changeTone`: stored once, offered once for each language and tone.
std::span<const ActionCase> filteredActions();

/// `{"translate":{"_0":"de"}}`, `{"fixGrammar":{}}`.
Json toJson(const UserAction& action);
UserAction userActionFromJson(const Json& json, const std::string& path = {});

template <>
UserAction decodeJson<UserAction>(const Json& value, const std::string& path);

}  // namespace quillmark
