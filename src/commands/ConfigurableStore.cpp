#include "commands/ConfigurableStore.h"

#include <algorithm>
#include <iterator>
#include <set>

#include "base/Log.h"

namespace quillmark {
namespace {

using Items = ConfigurableStore::Items;

auto find(Items& items, const std::string& id) {
  return std::find_if(items.begin(), items.end(), [&](const auto& item) { return item.id == id; });
}

bool isValid(const Items& items) {
  std::set<std::string_view> ids;
  return !items.empty() && std::all_of(items.begin(), items.end(), [&](const auto& item) {
    return !item.id.empty() && !item.name.empty() && ids.insert(item.id).second;
  });
}

}  // namespace

ConfigurableStore::ConfigurableStore(UserDefaults& defaults, const Keys& keys)
    : defaults_(defaults),
      keys_(keys),
      stored_(defaults, keys.items.name, configurableItemFromJson, JsonLayout::pretty) {}

const Items& ConfigurableStore::items() {
  if (!itemsCache.get()) {
    Items loaded = load();
    if (!itemsCache.get()) {  // the default items are there already, if they could be stored
      itemsCache.set(std::move(loaded));
    }
  }
  return *itemsCache.get();
}

Items ConfigurableStore::load() {
  const auto note = [this](const std::string& text) { log("[" + stored_.key() + "] " + text); };
  auto [records, problem] = stored_.load();
  if (records && isValid(*records)) {
    note("Loaded " + std::to_string(records->size()) + " items from storage");
    return std::move(*records);
  }
  if (records) {
    note("Loaded items are invalid, falling back to defaults");
    stored_.setAside("the items are invalid");
  } else if (problem.empty()) {
    note("No data found in storage, using defaults");
  } else {
    note("Failed to decode items: " + problem + ", falling back to defaults");
  }
  Items defaults = defaultItems();
  note("Creating " + std::to_string(defaults.size()) + " default items");
  save(defaults);
  return defaults;
}

Items ConfigurableStore::enabledItems() {
  Items enabled;
  std::ranges::copy_if(items(), std::back_inserter(enabled), &ConfigurableItem::isEnabled);
  std::ranges::stable_sort(enabled, {}, &ConfigurableItem::order);
  return enabled;
}

bool ConfigurableStore::save(Items items) {
  if (!stored_.store(items)) {
    return false;
  }
  itemsCache.set(std::move(items));
  defaults_.synchronize();
  return true;
}

void ConfigurableStore::setEnabled(const std::string& id, bool isEnabled) {
  Items changed = items();
  if (const auto found = find(changed, id); found != changed.end()) {
    found->isEnabled = isEnabled;
    save(std::move(changed));
  }
}

void ConfigurableStore::setAllEnabled(bool isEnabled) {
  Items changed = items();
  for (auto& item : changed) {
    item.isEnabled = isEnabled;
  }
  save(std::move(changed));
}

void ConfigurableStore::reorder(const std::vector<std::string>& ids) {
  Items left = items();
  Items ordered;
  for (std::size_t position = 0; position < ids.size(); ++position) {
    if (const auto found = find(left, ids[position]); found != left.end()) {
      found->order = static_cast<std::int64_t>(position);
      ordered.push_back(std::move(*found));
      left.erase(found);
    }
  }
  for (auto& item : left) {
    item.order = std::ssize(ordered);
    ordered.push_back(std::move(item));
  }
  save(std::move(ordered));
}

std::size_t ConfigurableStore::remove(const std::vector<std::string>& ids) {
  Items left = items();
  std::size_t failures = 0;
  for (const auto& id : ids) {
    const auto found = find(left, id);
    if (found == left.end() || left.size() == 1) {
      ++failures;
    } else {
      left.erase(found);
    }
  }
  if (left.size() < items().size()) {
    for (std::size_t position = 0; position < left.size(); ++position) {
      left[position].order = static_cast<std::int64_t>(position);
    }
    if (!save(std::move(left))) {
      return ids.size();
    }
  }
  return failures;
}

bool ConfigurableStore::append(ConfigurableItem item) {
  Items longer = items();
  item.order = std::ssize(longer);
  longer.push_back(std::move(item));
  return save(std::move(longer));
}

std::optional<std::string> ConfigurableStore::defaultSelection() const {
  return defaults_.get<std::string>(keys_.selection.name);
}

bool ConfigurableStore::setDefaultSelection(const std::string& name) {
  const Items candidates = enabledItems();
  const auto found = std::ranges::find(candidates, name, &ConfigurableItem::name);
  return found != candidates.end() && defaults_.set(keys_.selection.name, found->id);
}

std::optional<ConfigurableItem> ConfigurableStore::defaultItem() {
  const Items candidates = enabledItems();
  if (const auto selection = defaultSelection()) {
    if (const auto found = std::ranges::find(candidates, *selection, &ConfigurableItem::id);
        found != candidates.end()) {
      return *found;
    }
  }
  return candidates.empty() ? std::nullopt : std::optional(candidates.front());
}

void ConfigurableStore::migrateLegacySelection() {
  if (defaultSelection()) {
    return;
  }
  const std::string legacyKey = keys_.oldSelection.name;
  const auto legacy = defaults_.get<std::string>(legacyKey);
  if (legacy && !legacy->empty() && setDefaultSelection(*legacy)) {
    log("Migrated legacy " + legacyKey + ": " + *legacy);
    defaults_.remove(legacyKey);
  }
}

}  // namespace quillmark
