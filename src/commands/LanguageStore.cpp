#include "commands/LanguageStore.h"

#include <algorithm>

namespace quillmark {

std::vector<ConfigurableItem> LanguageStore::enabledItems() const {
  std::vector<ConfigurableItem> items;
  for (const char* id : {"en", "de", "es", "fr", "it", "pt", "ru", "zh", "ja", "ko", "ar", "hi", "tr", "nl",
                         "sv", "da", "no", "fi", "pl", "cs", "sk", "hu", "ro", "el", "th", "vi", "id"}) {
    items.push_back({id, id, std::nullopt, true, 0, false});
  }
  std::stable_sort(items.begin(), items.end(), [this](const auto& a, const auto& b) {
    return locale_.compareLocalized(displayName(a), displayName(b)) < 0;
  });
  for (std::size_t i = 0; i < items.size(); ++i) {
    items[i].order = static_cast<std::int64_t>(i);
  }
  return items;
}

std::optional<ConfigurableItem> LanguageStore::defaultItem() const { return enabledItems().front(); }

std::string LanguageStore::displayName(const ConfigurableItem& item) const {
  return locale_.displayName(item.id).value_or(item.name);
}

}  // namespace quillmark
