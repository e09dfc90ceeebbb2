#include "commands/UserAction.h"

#include "base/Localization.h"

namespace quillmark {
namespace {

struct ActionInfo {
  const char* title;
  std::string_view icon;
  CommandCategory category;
  const char* model;  // nullptr: the provider's default
};

const ActionInfo& actionInfo(ActionCase action) {
  using enum CommandCategory;
  static constexpr std::array<ActionInfo, RawValues<ActionCase>::table.size()> table{{
      {trLater("Fix Grammar & Spelling"), "pencil.tip.crop.circle", mainAction, nullptr},
      {trLater("Improve Text"), "pencil.and.outline", mainAction, nullptr},
      {trLater("Simplify Language"), "pencil.and.outline", mainAction, nullptr},
      {trLater("Make Text Longer"), "arrow.up.and.down.text.horizontal", mainAction, nullptr},
      {trLater("Make Text Shorter"), "arrow.down.and.line.horizontal.and.arrow.up", mainAction, nullptr},
      {trLater("Summarize"), "text.bubble", mainAction, nullptr},
      {trLater("Explain This"), "text.badge.star", mainAction, nullptr},
      {trLater("Improve Prompt"), "lasso.badge.sparkles", prompting, "gpt-4.1"},
      {trLater("Generate Prompt"), "bubbles.and.sparkles", prompting, "gpt-4.1"},
      {trLater("Execute Prompt"), "play.circle", customAction, "gpt-4.1"},
      {trLater("Change Tone"), "pencil.and.scribble", mainAction, nullptr},
      {trLater("Translate"), "globe", mainAction, nullptr},
      {trLater("Free Style"), "pencil.and.scribble", mainAction, nullptr},
      {trLater("Title Case"), "textformat.abc", rewrite, nullptr},
      {trLater("As emojis"), "face.smiling.inverse", rewrite, nullptr},
      {trLater("Translate to Yoda"), "text.bubble", rewrite, nullptr},
      {trLater("As Email"), "envelope", customAction, nullptr},
      {trLater("As Tweet"), "text.bubble", customAction, nullptr},
      {trLater("Humanize Text"), "face.smiling", seo, nullptr},
      {trLater("Custom Prompt"), "command", customAction, nullptr},
  }};
  return table[static_cast<std::size_t>(action)];
}

bool takesParameter(ActionCase action) {
  return action == ActionCase::changeTone || action == ActionCase::translate || action == ActionCase::freeStyle;
}

UserAction withParameter(ActionCase kind, std::string parameter) {
  UserAction action(kind);
  action.parameter = std::move(parameter);
  return action;
}

constexpr const char* parameterKey = "_0";

}  // namespace

UserAction UserAction::changeTone(std::string tone) { return withParameter(ActionCase::changeTone, std::move(tone)); }
UserAction UserAction::translate(std::string language) {
  return withParameter(ActionCase::translate, std::move(language));
}
UserAction UserAction::freeStyle(std::string task) { return withParameter(ActionCase::freeStyle, std::move(task)); }

std::string UserAction::title() const { return tr(actionInfo(kind).title); }
std::string UserAction::englishTitle() const { return actionInfo(kind).title; }
std::string_view UserAction::icon() const { return actionInfo(kind).icon; }
CommandCategory UserAction::category() const { return actionInfo(kind).category; }

std::optional<std::string> UserAction::model() const {
  const char* model = actionInfo(kind).model;
  return model == nullptr ? std::nullopt : std::optional<std::string>(model);
}

std::span<const ActionCase> baseActions() {
  using enum ActionCase;
  static constexpr std::array actions{fixGrammar,     improveWriting, simplifyLanguage,      makeLonger,
                                      makeShorter,    summarize,      explainThis,           improvePrompt,
                                      generatePrompt, executePrompt,  ActionCase::translate, ActionCase::changeTone};
  return actions;
}

std::span<const ActionCase> catalogueActions() {
  using enum ActionCase;
  static constexpr std::array actions{fixGrammar,
                                      improveWriting,
                                      simplifyLanguage,
                                      makeLonger,
                                      makeShorter,
                                      summarize,
                                      explainThis,
                                      improvePrompt,
                                      generatePrompt,
                                      executePrompt,
                                      ActionCase::changeTone,
                                      ActionCase::translate,
                                      titleCase,
                                      asEmojis,
                                      translateToYoda,
                                      asEmail,
                                      asTweet,
                                      humanizeText};
  return actions;
}

std::span<const ActionCase> filteredActions() { return baseActions().last(2); }

Json toJson(const UserAction& action) {
  Json value = Json::object();
  if (takesParameter(action.kind) && action.parameter) {
    value[parameterKey] = *action.parameter;
  }
  return {{action.identifier(), std::move(value)}};
}

UserAction userActionFromJson(const Json& json, const std::string& path) {
  const JsonObject object(json, path);
  std::optional<UserAction> action;
  std::string key;
  for (const auto& [name, value] : json.items()) {
    if (const auto kind = fromRawValue<ActionCase>(name)) {
      if (action) {
        throw DecodingError(path, "Invalid number of keys found, expected one.");
      }
      action = UserAction(*kind);
      key = name;
    }
  }
  if (!action) {
    throw DecodingError(path, "Invalid number of keys found, expected one.");
  }
  const JsonObject nested(json.at(key), object.pathOf(key.c_str()));
  if (takesParameter(action->kind)) {
    action->parameter = nested.optional<std::string>(parameterKey);
  }
  return *action;
}

template <>
UserAction decodeJson<UserAction>(const Json& value, const std::string& path) {
  return userActionFromJson(value, path);
}

}  // namespace quillmark
