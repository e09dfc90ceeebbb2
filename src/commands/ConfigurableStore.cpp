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

constexpr const char* invalidItems = "the items are invalid";

bool isValid(const Items& items) {
  std::set<std::string_view> ids;
  return !items.empty() && std::all_of(items.begin(), items.end(), [&](const auto& item) {
    return !item.id.empty() && !item.name.empty() && ids.insert(item.id).second;
  });
}

}  // namespace

ConfigurableStore::ConfigurableStore(UserDefaults& defaults, const Keys& keys)
    : list_(defaults, keys.items,
            {.read = configurableItemFromJson,
             .layout = JsonLayout::pretty,
             .initial = [this] { return defaultItems(); },
             .problem =
                 [](const Items& items) {
                   return isValid(items) ? std::nullopt : std::optional<std::string>(invalidItems);
                 }}),
      defaults_(defaults),
      keys_(keys) {}

const Items& ConfigurableStore::items() {
  if (!list_.isLoaded()) {
    load();
  }
  return itemsCache.get();
}

void ConfigurableStore::load() {
  using enum LoadedList::Found;
  const auto note = [this](const std::string& text) { log("[" + list_.key() + "] " + text); };
  const auto [found, problem] = list_.load();
  const std::string count = std::to_string(itemsCache->size());
  if (found == list) {
    note("Loaded " + count + " items from storage");
    return;
  }
  note(found == nothing          ? "No data found in storage, using defaults"
       : problem == invalidItems ? "Loaded items are invalid, falling back to defaults"
                                 : "Failed to decode items: " + problem + ", falling back to defaults");
  note("Creating " + count + " default items");
  (void)save([](Items&) {});  // a refusal doesn't matter: the default items apply while nothing is stored
}

Items ConfigurableStore::enabledItems() {
  Items enabled;
  std::ranges::copy_if(items(), std::back_inserter(enabled), &ConfigurableItem::isEnabled);
  std::ranges::stable_sort(enabled, {}, &ConfigurableItem::order);
  return enabled;
}

bool ConfigurableStore::save(const Edit& edit) {
  if (!list_.edit(edit)) {
    return false;
  }
  defaults_.synchronize();
  return true;
}

bool ConfigurableStore::setEnabled(const std::string& id, bool isEnabled) {
  Items known = items();
  return find(known, id) == known.end() || save([&](Items& list) {
           if (const auto found = find(list, id); found != list.end()) {
             found->isEnabled = isEnabled;
           }
         });
}

bool ConfigurableStore::setAllEnabled(bool isEnabled) {
  return save([isEnabled](Items& list) {
    for (auto& item : list) {
      item.isEnabled = isEnabled;
    }
  });
}

bool ConfigurableStore::reorder(const std::vector<std::string>& ids) {
  return save([&ids](Items& list) {
    Items ordered;
    for (std::size_t position = 0; position < ids.size(); ++position) {
      if (const auto found = find(list, ids[position]); found != list.end()) {
        found->order = static_cast<std::int64_t>(position);
        ordered.push_back(std::move(*found));
        list.erase(found);
      }
    }
    for (auto& item : list) {
      item.order = std::ssize(ordered);
      ordered.push_back(std::move(item));
    }
    list = std::move(ordered);
  });
}

std::size_t ConfigurableStore::remove(const std::vector<std::string>& ids) {
  items();
  std::size_t failures = 0;
  const bool stored = list_.edit([&](Items& list) {
    for (const auto& id : ids) {
      const auto found = find(list, id);
      if (found == list.end() || list.size() == 1) {
        ++failures;
      } else {
        list.erase(found);
      }
    }
    for (std::size_t position = 0; position < list.size(); ++position) {
      list[position].order = static_cast<std::int64_t>(position);
    }
    return failures < ids.size();
  });
  if (stored) {
    defaults_.synchronize();
  }
  return stored ? failures : ids.size();
}

bool ConfigurableStore::append(ConfigurableItem item, const std::function<bool(const ConfigurableItem&)>& clashes) {
  items();
  // Looked up again in what is stored by then.
  return list_.edit([&](Items& list) {
    if (std::ranges::any_of(list, clashes)) {
      return false;
    }
    item.order = std::ssize(list);
    list.push_back(std::move(item));
    return true;
  });
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
