#include "commands/LanguageStore.h"

#include <algorithm>
#include <array>

#include "base/Log.h"
#include "base/Text.h"
#include "commands/LanguageFlags.h"

namespace quillmark {
namespace {

constexpr std::array defaultEnabledLanguageIds{"en", "de", "es", "fr", "it", "pt", "ru", "zh", "ja",
                                               "ko", "ar", "hi", "tr", "nl", "sv", "da", "no", "fi",
                                               "pl", "cs", "sk", "hu", "ro", "el", "th", "vi", "id"};

}  // namespace

LanguageStore::LanguageStore(UserDefaults& defaults, const LocaleInfo& locale)
    : ConfigurableStore(defaults, {keys::languageSettings, keys::languageSelection, keys::oldLanguageSelection}),
      locale_(locale) {
  migrateLegacySelection();
}

std::optional<std::string> LanguageStore::localName(const std::string& identifier) const {
  const auto [entry, isNew] = names_.try_emplace(identifier);
  if (isNew) {
    entry->second = locale_.displayName(identifier);
  }
  return entry->second;
}

void LanguageStore::sortByName(std::vector<std::string>& identifiers) const {
  std::ranges::stable_sort(
      identifiers, [this](const auto& a, const auto& b) { return locale_.compareLocalized(a, b) < 0; },
      [this](const auto& identifier) { return localName(identifier).value_or(identifier); });
}

std::string LanguageStore::displayName(const LanguageItem& item) const {
  std::string base = item.name;
  if (!item.isCustom) {
    auto name = localName(item.id);
    if (!name) {
      name = localName(item.id.substr(0, item.id.find('-')));
    }
    base = std::move(name).value_or(item.name);
  }
  const auto flag = languageFlag(item.id);
  return flag ? *flag + " " + base : base;
}

ConfigurableStore::Items LanguageStore::defaultItems() const {
  std::vector<std::string> identifiers(defaultEnabledLanguageIds.begin(), defaultEnabledLanguageIds.end());
  sortByName(identifiers);
  const std::string count = std::to_string(identifiers.size());
  log("[TranslationOptions] Created " + count + " language definitions from defaultEnabledLanguageIds");

  log("[LanguageStore] Creating default items from " + count + " language definitions");
  Items items;
  for (const auto& id : identifiers) {
    items.push_back({id, id, std::nullopt, true, std::ssize(items), false});
  }
  log("[LanguageStore] Created " + count + " items (" + count + " enabled by default)");
  return items;
}

std::vector<std::string> LanguageStore::availableLanguages() {
  std::vector<std::string> identifiers = locale_.availableIdentifiers();
  std::erase_if(identifiers, [this](const std::string& id) {
    return text::split(id, '_').size() > 2 || id.find('@') != std::string::npos ||
           std::ranges::find(items(), id, &LanguageItem::id) != items().end();
  });
  sortByName(identifiers);
  return identifiers;
}

bool LanguageStore::addLanguage(const std::string& id) {
  if (id.empty() || locale_.canonicalIdentifier(id) != id) {
    return false;
  }
  return append({id, id, std::nullopt, true, 0, false}, [&id](const auto& item) { return item.id == id; });
}

}  // namespace quillmark
