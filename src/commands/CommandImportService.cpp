#include "commands/CommandImportService.h"

#include <utility>

#include "base/Localization.h"
#include "base/Log.h"
#include "base/Text.h"

namespace quillmark {
namespace {

constexpr const char* translationSystemPrompt =
    "You are a professional translator. Translate command titles accurately while preserving their meaning and keeping "
    "them concise.";

/// {L} is replaced by the name of a language, {T} by the title.
constexpr const char* translationPrompt =
    "Translate the following command title to {L}. \n"
    "Return ONLY the translated title without any additional text or explanation.\n"
    "If the title is already in {L}, return it unchanged.\n"
    "\n"
    "Examples:\n"
    "- \"Fix Grammar & Spelling\" -> \"Rechtschreibung & Grammatik korrigieren\" in German.\n"
    "- \"Make Text Longer\" -> \"Text verlängern\" in German.\n"
    "- \"As Emoji\" -> \"Als Emoji\" in German.\n"
    "- \"Title Case\" -> \"Großschreibung\" in German.\n"
    "\n"
    "Title: {T}";

AlertKind installationFailed(std::string message) {
  return {AlertStyle::warning, tr("Installation Failed"), std::move(message), {tr("OK")}};
}

AlertKind installationSuccessful(const std::string& name) {
  return {AlertStyle::informational,
          tr("Installation Successful"),
          tr("Command '{}' has been installed successfully!", name),
          {tr("OK")}};
}

}  // namespace

void CommandImportService::install(const std::string& slug) {
  if (collaborators_.promptStore.commandForSlug(slug)) {
    collaborators_.alerts.show(installationFailed(tr("Command '{}' is already installed", slug)));
    return;
  }
  if (!underWay_.insert(slug).second) {
    log("Command '" + slug + "' is being installed already");
    return;
  }
  collaborators_.transport.send<CommandTemplate>(
      {"GET", collaborators_.appConfig.serviceRoot() + "/api/prompts/" + slug, {}, std::nullopt}, "CommandTemplate",
      [](const Json& json) { return commandTemplateFromJson(json); },
      lifetime_.guard([this, slug](const Expected<CommandTemplate, TransportError>& answer) {
        if (!answer) {
          underWay_.erase(slug);
          collaborators_.alerts.show(
              installationFailed(tr("Failed to install command: {}", answer.error().description)));
          return;
        }
        translateTitle(answer->title, [this, slug, command = answer->toCommand()](const Title& translated) {
          underWay_.erase(slug);
          add(command, translated);
        });
      }));
}

void CommandImportService::add(Command command, const Title& translated) {
  if (translated) {
    command.name = *translated;
  }
  if (collaborators_.promptStore.add(command)) {
    collaborators_.alerts.show(installationSuccessful(command.name));
  }
}

void CommandImportService::translateTitle(const std::string& title, std::function<void(const Title&)> completion) {
  const auto config = collaborators_.providerStore.defaultConfig();
  if (!config || !config->enabled) {
    completion(std::nullopt);
    return;
  }
  std::string locale = collaborators_.interfaceLanguage;
  if (locale.empty()) {
    locale = "en";
  }
  std::string text = translationPrompt;
  text =
      text::replacingAll(std::move(text), "{L}", collaborators_.locale.displayName(locale, locale).value_or("English"));
  text = text::replacingAll(std::move(text), "{T}", title);

  const auto finish = [completion = std::move(completion)](const std::optional<std::string>& answer) {
    const std::string_view translated = text::trimmed(answer ? std::string_view(*answer) : std::string_view());
    completion(translated.empty() ? std::nullopt : Title(translated));
  };
  collaborators_.providerFactory.makeProvider(*config)->chat(
      text, translationSystemPrompt, std::nullopt, onMainQueue(collaborators_.queue, lifetime_.guard(finish)));
}

}  // namespace quillmark
