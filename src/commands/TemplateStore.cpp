#include "commands/TemplateStore.h"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <utility>

#include "base/Log.h"
#include "base/Text.h"
#include "commands/PromptFactory.h"

namespace quillmark {
namespace {

/// The built-in actions, then some of them again as custom prompts.
std::vector<Command> fallbackTemplates() {
  constexpr std::pair<ActionCase, CommandCategory> customPrompts[] = {
      {ActionCase::translateToYoda, CommandCategory::rewrite},
      {ActionCase::asEmail, CommandCategory::customAction},
      {ActionCase::asTweet, CommandCategory::customAction},
      {ActionCase::humanizeText, CommandCategory::rewrite},
  };
  std::vector<Command> list;
  const auto append = [&list](const UserAction& action, std::optional<UserAction> type, CommandCategory category) {
    list.push_back(
        Command::make(action.title(), std::move(type), PromptFactory::promptText(action), std::nullopt, category));
  };
  for (const UserAction action : catalogueActions()) {
    append(action, action, action.category());
  }
  for (const auto& [action, category] : customPrompts) {
    append(action, std::nullopt, category);
  }
  return list;
}

}  // namespace

TemplateStore::TemplateStore(UserDefaults& defaults, HttpTransport& transport, const AppConfig& appConfig,
                             const MainQueue& queue)
    : list_(defaults, keys::cachedTemplates,
            {.read = commandFromJson, .initial = fallbackTemplates, .emptyIsNone = true}),
      lastFetchTimestamp(defaults, keys::templatesLastFetch),
      cachedTemplatesCount(defaults, keys::cachedTemplatesCount),
      queue_(queue) {
  const bool isCached = list_.load().found == LoadedList::Found::list;
  const std::string count = std::to_string(templates->size());
  if (isCached) {
    log("Loaded " + count + " cached templates");
  } else {
    log("No cached templates found");
    log("Initialized " + count + " fallback templates");
  }
  const double last = lastFetchTimestamp.get();
  if (last == 0 || now() - last >= weekInSeconds) {
    fetch(transport, appConfig);
  }
}

std::vector<Command> TemplateStore::filteredTemplates(const std::string& query) const {
  if (query.empty()) {
    return templates;
  }
  const auto holdsQuery = [wanted = text::lowerCased(query)](const std::string& text) {
    return text::lowerCased(text).find(wanted) != std::string::npos;
  };
  std::vector<Command> result;
  std::ranges::copy_if(templates.get(), std::back_inserter(result), [&](const Command& command) {
    return holdsQuery(command.name) || (command.content && holdsQuery(*command.content));
  });
  return result;
}

void TemplateStore::fetch(HttpTransport& transport, const AppConfig& appConfig) {
  log("Fetching templates from API...");
  using Records = std::vector<CommandTemplate>;
  transport.send<Records>(
      {"GET", appConfig.serviceRoot() + "/api/prompts", {}, std::nullopt}, "Array<CommandTemplate>",
      [](const Json& json) { return decodeArray<CommandTemplate>(json, commandTemplateFromJson); },
      lifetime_.guard([this](const Expected<Records, TransportError>& answer) { take(answer); }));
}

void TemplateStore::take(const Expected<std::vector<CommandTemplate>, TransportError>& answer) {
  if (!answer) {
    log("Failed to fetch templates from API: " + answer.error().description);
    return;
  }
  const std::string count = std::to_string(answer->size());
  // None of this is the user's own, so a failure to store it is not reported: the next start fetches it again.
  const bool cached = list_.edit(
      [&](std::vector<Command>& list) {
        list.clear();
        std::ranges::transform(*answer, std::back_inserter(list), &CommandTemplate::toCommand);
        cachedTemplatesCount.set(std::ssize(list));
        lastFetchTimestamp.set(now());
      },
      Durability::endOfProcess);
  if (cached) {
    log("Cached " + count + " templates");
    log("Successfully fetched and cached " + count + " templates from API");
  }
}

double TemplateStore::now() const { return std::chrono::duration<double>(queue_.now().time_since_epoch()).count(); }

}  // namespace quillmark
