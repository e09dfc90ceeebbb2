#include "commands/CustomPromptStore.h"

#include <algorithm>
#include <iterator>

#include "base/Log.h"
#include "base/Slug.h"
#include "platform/StoredRecords.h"

namespace quillmark {
namespace {

template <class Predicate>
std::optional<Command> first(const std::vector<Command>& list, Predicate predicate) {
  const auto found = std::find_if(list.begin(), list.end(), predicate);
  return found == list.end() ? std::nullopt : std::optional(*found);
}

template <class Predicate>
std::vector<Command> all(const std::vector<Command>& list, Predicate predicate) {
  std::vector<Command> result;
  std::copy_if(list.begin(), list.end(), std::back_inserter(result), predicate);
  return result;
}

}  // namespace

void CustomPromptStore::load() {
  using Stored = StoredRecords<Command>;
  auto stored = Stored::load(defaults_, userDefaultsKey, commandFromJson);
  if (stored.found == Stored::Found::undecodable) {
    setAside(defaults_, userDefaultsKey, stored.problem);
  }
  if (stored.records.empty()) {
    log("No prompts found, initializing default prompts");
    initBasePrompts();
    return;
  }
  log("Load prompt " + std::to_string(stored.records.size()));
  prompts.set(std::move(stored.records));
}

void CustomPromptStore::save(std::optional<std::vector<Command>> list, const std::optional<std::string>& action) {
  std::vector<Command> sorted = std::move(list).value_or(prompts.get());
  std::stable_sort(sorted.begin(), sorted.end(),
                   [](const auto& a, const auto& b) { return sortRank(a.category) < sortRank(b.category); });
  prompts.set(std::move(sorted));
  log("saved " + std::to_string(prompts.get().size()) + " action: " + action.value_or("none"));
  storeRecords(defaults_, userDefaultsKey, prompts.get());
}

void CustomPromptStore::initBasePrompts() {
  std::vector<Command> list = prompts.get();
  const std::size_t before = list.size();
  for (const ActionCase action : baseActions()) {
    if (!commandFor(action)) {
      log(UserAction(action).identifier() + " action added");
      list.push_back(Command::make(UserAction(action)));
    }
  }
  if (list.size() > before) {
    save(std::move(list), "init base prompts");
  }
}

std::optional<Command> CustomPromptStore::command(const std::optional<Uuid>& id) const {
  return id ? first(prompts.get(), [&](const auto& command) { return command.id == *id; }) : std::nullopt;
}

std::optional<Command> CustomPromptStore::commandFor(const UserAction& action) const {
  if (action.kind == ActionCase::freeStyle) {
    if (!freeStyle_) {
      freeStyle_ = Command::make(UserAction(ActionCase::freeStyle));
    }
    return freeStyle_;
  }
  const bool expands = action.kind == ActionCase::translate || action.kind == ActionCase::changeTone;
  const UserAction stored = expands ? UserAction(action.kind) : action;
  return first(prompts.get(), [&](const auto& command) { return command.type == stored; });
}

std::optional<Command> CustomPromptStore::commandForSlug(const std::string& slug) const {
  return first(prompts.get(), [&](const auto& command) { return slugify(command.name) == slug; });
}

std::vector<Command> CustomPromptStore::commands(CommandCategory category) const {
  return all(prompts.get(), [category](const auto& command) {
    return command.enabled && command.category == category && command.type.kind != ActionCase::freeStyle;
  });
}

std::vector<Command> CustomPromptStore::mainCommands() const {
  return all(commands(CommandCategory::mainAction), [](const auto& command) {
    return command.type.kind != ActionCase::changeTone && command.type.kind != ActionCase::translate;
  });
}

void CustomPromptStore::incrementUsage(const std::optional<Uuid>& id) {
  if (!id) {
    return;
  }
  prompts.mutateQuietly([&](auto& list) {
    const auto found = std::find_if(list.begin(), list.end(), [&](const auto& command) { return command.id == *id; });
    if (found != list.end()) {
      ++found->usageCount;
    }
  });
}

}  // namespace quillmark
