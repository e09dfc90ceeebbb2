#include "commands/UserAction.h"

#include <array>

#include "base/Localization.h"

namespace quillmark {
namespace {

constexpr ActionParameter tone{"{{tone}}", ItemList::tones, trLater("Change tone to {}"), trLater("Change tone")};
constexpr ActionParameter language{"{{language}}", ItemList::languages, trLater("Translate to {}"),
                                   trLater("Translate")};
constexpr ActionParameter task{"{{task}}"};

constexpr const char* parameterKey = "_0";

}  // namespace

using enum ActionCase;
using enum CommandCategory;

constinit const EnumTable<ActionInfo> RawValues<ActionCase>::table{{
    {fixGrammar, "fixGrammar", trLater("Fix Grammar & Spelling"), "pencil.tip.crop.circle", mainAction},
    {improveWriting, "improveWriting", trLater("Improve Text"), "pencil.and.outline", mainAction},
    {simplifyLanguage, "simplifyLanguage", trLater("Simplify Language"), "pencil.and.outline", mainAction},
    {makeLonger, "makeLonger", trLater("Make Text Longer"), "arrow.up.and.down.text.horizontal", mainAction},
    {makeShorter, "makeShorter", trLater("Make Text Shorter"), "arrow.down.and.line.horizontal.and.arrow.up",
     mainAction},
    {summarize, "summarize", trLater("Summarize"), "text.bubble", mainAction},
    {explainThis, "explainThis", trLater("Explain This"), "text.badge.star", mainAction},
    {improvePrompt, "improvePrompt", trLater("Improve Prompt"), "lasso.badge.sparkles", prompting, "gpt-4.1"},
    {generatePrompt, "generatePrompt", trLater("Generate Prompt"), "bubbles.and.sparkles", prompting, "gpt-4.1"},
    {executePrompt, "executePrompt", trLater("Execute Prompt"), "play.circle", customAction, "gpt-4.1"},
    {changeTone, "changeTone", trLater("Change Tone"), "pencil.and.scribble", mainAction, nullptr, &tone},
    {translate, "translate", trLater("Translate"), "globe", mainAction, nullptr, &language},
    {freeStyle, "freeStyle", trLater("Free Style"), "pencil.and.scribble", mainAction, nullptr, &task,
     ActionBehavior::showReview, false},
    {titleCase, "titleCase", trLater("Title Case"), "textformat.abc", rewrite},
    {asEmojis, "asEmojis", trLater("As emojis"), "face.smiling.inverse", rewrite},
    {translateToYoda, "translateToYoda", trLater("Translate to Yoda"), "text.bubble", rewrite},
    {asEmail, "asEmail", trLater("As Email"), "envelope", customAction},
    {asTweet, "asTweet", trLater("As Tweet"), "text.bubble", customAction},
    {humanizeText, "humanizeText", trLater("Humanize Text"), "face.smiling", seo},
    {customPrompt, "customPrompt", trLater("Custom Prompt"), "command", customAction, nullptr, nullptr, std::nullopt,
     false},
}};

std::string UserAction::title() const { return tr(info(kind).title); }

std::optional<std::string> UserAction::model() const {
  const char* model = info(kind).model;
  return model == nullptr ? std::nullopt : std::optional<std::string>(model);
}

std::span<const ActionCase> baseActions() {
  static constexpr std::array actions{fixGrammar,     improveWriting, simplifyLanguage, makeLonger,
                                      makeShorter,    summarize,      explainThis,      improvePrompt,
                                      generatePrompt, executePrompt,  translate,        changeTone};
  return actions;
}

std::vector<ActionCase> catalogueActions() {
  std::vector<ActionCase> actions;
  for (const auto& action : RawValues<ActionCase>::table) {
    if (action.inCatalogue) {
      actions.push_back(action.key);
    }
  }
  return actions;
}

std::span<const ActionCase> filteredActions() { return baseActions().last(2); }

Json toJson(const UserAction& action) {
  Json value = Json::object();
  if (info(action.kind).takesParameter() && action.parameter) {
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
  if (info(action->kind).takesParameter()) {
    action->parameter = nested.optional<std::string>(parameterKey);
  }
  return *action;
}

template <>
UserAction decodeJson<UserAction>(const Json& value, const std::string& path) {
  return userActionFromJson(value, path);
}

}  // namespace quillmark
