#include "commands/CustomPromptStore.h"

#include <algorithm>
#include <chrono>
#include <iterator>

#include "base/Localization.h"
#include "base/Log.h"
#include "base/Slug.h"
#include "base/Text.h"

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

Command* withId(std::vector<Command>& list, const Uuid& id) {
  const auto found = std::find_if(list.begin(), list.end(), [&](const auto& command) { return command.id == id; });
  return found == list.end() ? nullptr : &*found;
}

bool isOfferedByItself(const Command& command) { return !info(command.type.kind).takesParameter(); }

/// One entry for each item, with the settings of the command that is expanded.
void appendExpansions(std::vector<Command>& list, const Command& source, ConfigurableStore& store,
                      const ConfigurableStore::Items& items) {
  for (const auto& item : items) {
    Command entry = source;
    entry.id = Uuid::random();
    entry.name = tr(info(source.type.kind).parameter->itemTitle, store.displayName(item));
    entry.type.parameter = item.name;
    list.push_back(std::move(entry));
  }
}

ConfigurableStore::Items enabledOrDefault(ConfigurableStore& store) {
  auto items = store.enabledItems();
  return items.empty() ? store.defaultItems() : items;
}

std::optional<Command> findFor(const std::vector<Command>& list, const UserAction& action) {
  const UserAction stored = info(action.kind).items() ? UserAction(action.kind) : action;
  return first(list, [&](const auto& command) { return command.type == stored; });
}

void sortByCategory(std::vector<Command>& list) {
  std::ranges::stable_sort(list, {}, [](const Command& command) { return sortRank(command.category); });
}

bool addMissingBaseCommands(std::vector<Command>& list) {
  const std::size_t before = list.size();
  for (const ActionCase action : baseActions()) {
    if (!findFor(list, action)) {
      log(UserAction(action).identifier() + " action added");
      list.push_back(Command::make(UserAction(action)));
    }
  }
  return list.size() > before;
}

std::vector<Command> baseCommands() {
  std::vector<Command> list;
  addMissingBaseCommands(list);
  sortByCategory(list);
  return list;
}

bool addMissingSlugs(std::vector<Command>& list) {
  log("Migrating: Adding slugs to commands");
  bool added = false;
  for (auto& command : list) {
    if (command.slug.empty()) {
      command.slug = slugify(command.name);
      added = true;
    }
  }
  return added;
}

bool markCustomNames(std::vector<Command>& list) {
  log("Migrating: Adding hasCustomName flags");
  for (auto& command : list) {
    if (command.type.kind == ActionCase::customPrompt) {
      command.hasCustomName = true;
      continue;
    }
    const std::string english = command.type.englishTitle();
    command.hasCustomName = command.name != english;
    log(command.hasCustomName ? "Marked '" + command.name + "' as customized (differs from English: '" + english + "')"
                              : "Kept '" + command.name + "' as original (matches English baseline)");
  }
  return true;
}

/// One step that brings the commands of an older version up to date.
struct Migration {
  const char* version;                 ///< that introduced it
  bool (*run)(std::vector<Command>&);  ///< returns whether it changed the list
  const char* action;                  ///< label of the save
  const char* completion;              ///< log line
};

}  // namespace

CustomPromptStore::CustomPromptStore(UserDefaults& defaults, std::optional<Expansions> expansions)
    : list_(defaults, keys::customPrompts,
            {.read = commandFromJson,
             .initial = baseCommands,
             .emptyIsNone = true,
             .recall =
                 [this](auto& list) {
                   for (const auto& [id, runs] : unsavedRuns_) {
                     if (Command* command = withId(list, id)) {
                       command->usageCount += runs;
                     }
                   }
                 }}),
      lastMigratedVersion(defaults),
      appVersion(defaults),
      expansions_(expansions) {
  editsElsewhere_ = list_.followed.connect([this] { buildSearchableCommands(); });
  if (expansions_) {
    follow(expansions_->languageStore, languages_);
    follow(expansions_->toneStore, tones_);
  }
}

void CustomPromptStore::follow(ConfigurableStore& store, Followed& followed) {
  followed.changes = store.itemsCache.observe([this, &store, &followed](const auto& items) {
    if (items.empty()) {
      return;
    }
    auto enabled = store.enabledItems();
    if (followed.enabled == enabled) {
      return;
    }
    followed.enabled = std::move(enabled);
    followed.rebuild.cancel();
    constexpr auto debounce = std::chrono::milliseconds(150);
    followed.rebuild = expansions_->mainQueue.after(debounce, lifetime_.guard([this] { buildSearchableCommands(); }));
  });
}

void CustomPromptStore::load() {
  if (list_.load().found == LoadedList::Found::list) {
    log("Load prompt " + std::to_string(prompts->size()));
    runMigrations();
    buildSearchableCommands();
    return;
  }
  log("No prompts found, initializing default prompts");
  if (!save([](auto&) {}, "init base prompts")) {
    buildSearchableCommands();  // the base commands apply while nothing is stored
  }
}

void CustomPromptStore::loadUnchanged() { list_.load(); }

bool CustomPromptStore::save(const Edit& edit, const std::optional<std::string>& action) {
  const bool stored = list_.edit([&edit](auto& list) {
    edit(list);
    sortByCategory(list);
  });
  if (stored) {
    unsavedRuns_.clear();
    log("saved " + std::to_string(prompts->size()) + " action: " + action.value_or("none"));
    buildSearchableCommands();
  }
  return stored;
}

bool CustomPromptStore::initBasePrompts() {
  std::vector<Command> list = prompts;
  return !addMissingBaseCommands(list) || save(addMissingBaseCommands, "init base prompts");
}

void CustomPromptStore::runMigrations() {
  static constexpr Migration migrations[] = {
      {"2.0.4", addMissingBaseCommands, "init base prompts", nullptr},
      {"2.4.0", addMissingSlugs, "migration", "Migration complete: Added slugs to commands"},
      {"2.12.0", markCustomNames, "hasCustomName migration", "Migration complete: Added hasCustomName flags"},
  };
  for (const auto& migration : migrations) {
    // Each step stores the running version, so a later step may find the store up to date already. A store without a
    // version is older than all of them.
    if (text::compareNumerically(lastMigratedVersion.get(), migration.version) >= 0) {
      continue;
    }
    if (migration.run == addMissingBaseCommands) {
      log("Add missing initial prompts for " + appVersion.get());
    }
    bool changed = false;
    const bool stored = list_.edit([&](auto& list) {
      changed = migration.run(list);
      sortByCategory(list);
      lastMigratedVersion.set(appVersion.get());
    });
    if (!stored) {
      return;  // the next start tries again
    }
    if (changed) {
      log("saved " + std::to_string(prompts->size()) + " action: " + migration.action);
      if (migration.completion != nullptr) {
        log(migration.completion);
      }
    }
  }
}

void CustomPromptStore::buildSearchableCommands() {
  if (!expansions_) {
    return;
  }
  auto& [languageStore, toneStore, mainQueue] = *expansions_;
  const auto languages = enabledOrDefault(languageStore);
  const auto tones = enabledOrDefault(toneStore);

  std::vector<Command> expanded;
  expanded.reserve(languages.size() + tones.size());
  for (const ActionCase action : filteredActions()) {
    if (const auto source = commandFor(action)) {
      const bool isPerLanguage = info(action).items() == ItemList::languages;
      appendExpansions(expanded, *source, isPerLanguage ? languageStore : toneStore, isPerLanguage ? languages : tones);
    }
  }

  // Sorted as pointers: a command is large.
  std::vector<const Command*> order;
  order.reserve(prompts.get().size() + expanded.size());
  for (const auto& command : prompts.get()) {
    if (command.enabled && isOfferedByItself(command)) {
      order.push_back(&command);
    }
  }
  log("buildSearchableCommands prompts: " + std::to_string(order.size()) +
      " languages: " + std::to_string(languages.size()) + " tones: " + std::to_string(tones.size()));
  for (const auto& command : expanded) {
    order.push_back(&command);
  }
  std::ranges::stable_sort(order, std::ranges::greater(), &Command::usageCount);

  std::vector<Command> list;
  list.reserve(order.size());
  for (const Command* command : order) {
    list.push_back(*command);
  }
  searchableCommands.set(std::move(list));
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
  return findFor(prompts, action);
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
  return all(commands(CommandCategory::mainAction), isOfferedByItself);
}

bool CustomPromptStore::add(std::optional<Command> command) {
  if (!command) {
    command = Command::make(tr("New Command"), std::nullopt, std::nullopt, std::nullopt, CommandCategory::customAction);
  }
  return save([&command](auto& list) { list.push_back(std::move(*command)); }, "add prompt");
}

bool CustomPromptStore::update(Command command) {
  command.slug = slugify(command.name);
  return save(
      [&command](auto& list) {
        if (Command* present = withId(list, command.id)) {
          *present = std::move(command);
        }
      },
      "update prompt");
}

bool CustomPromptStore::duplicate(const std::optional<Uuid>& id) {
  auto copy = command(id);
  if (!copy) {
    return true;
  }
  copy->id = Uuid::random();
  copy->name += tr(" Copy");
  copy->type = ActionCase::customPrompt;
  return add(std::move(copy));
}

void CustomPromptStore::incrementUsage(const std::optional<Uuid>& id) {
  if (!id) {
    return;
  }
  list_.changeUnstored([&](auto& list) {
    if (Command* command = withId(list, *id)) {
      ++command->usageCount;
      ++unsavedRuns_[*id];
    }
  });
}

void CustomPromptStore::merge(std::vector<Command>& list, Command command) {
  if (command.type.kind != ActionCase::customPrompt) {
    const auto builtIn = std::ranges::find(list, command.type, &Command::type);
    if (builtIn != list.end()) {
      *builtIn = Command::make(command.type);
      builtIn->behavior = command.behavior;
      return;
    }
  }
  if (Command* present = withId(list, command.id)) {
    *present = std::move(command);
  } else {
    list.push_back(std::move(command));
  }
}

}  // namespace quillmark
