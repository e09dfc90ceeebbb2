#include "commands/ToneStore.h"

#include "base/Localization.h"
#include "base/Text.h"

namespace quillmark {

std::vector<ConfigurableItem> ToneStore::enabledItems() const {
  std::vector<ConfigurableItem> items;
  for (const char* nameKey :
       {trLater("Professional"), trLater("Friendly"), trLater("Casual"), trLater("Straightforward"),
        trLater("Confident"), trLater("Enthusiastic"), trLater("Inspirational"), trLater("Urgent"), trLater("Punchier"),
        trLater("Humorous"), trLater("Thoughtful"), trLater("Witty")}) {
    items.push_back({text::lowerCased(nameKey), tr(nameKey), nameKey, true, std::ssize(items), false});
  }
  return items;
}

std::optional<ConfigurableItem> ToneStore::defaultItem() const { return enabledItems().front(); }

std::string ToneStore::displayName(const ConfigurableItem& item) {
  return item.nameKey ? tr(item.nameKey->c_str()) : item.name;
}

}  // namespace quillmark
