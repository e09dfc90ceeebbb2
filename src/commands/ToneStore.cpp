#include "commands/ToneStore.h"

#include <algorithm>
#include <array>

#include "base/Localization.h"
#include "base/Text.h"

namespace quillmark {
namespace {

struct ToneDefinition {
  const char* id;
  const char* nameKey;
};

constexpr std::array toneOptions{
    ToneDefinition{"professional", trLater("Professional")},
    ToneDefinition{"friendly", trLater("Friendly")},
    ToneDefinition{"casual", trLater("Casual")},
    ToneDefinition{"straightforward", trLater("Straightforward")},
    ToneDefinition{"confident", trLater("Confident")},
    ToneDefinition{"enthusiastic", trLater("Enthusiastic")},
    ToneDefinition{"inspirational", trLater("Inspirational")},
    ToneDefinition{"urgent", trLater("Urgent")},
    ToneDefinition{"punchier", trLater("Punchier")},
    ToneDefinition{"humorous", trLater("Humorous")},
    ToneDefinition{"thoughtful", trLater("Thoughtful")},
    ToneDefinition{"witty", trLater("Witty")},
};

std::string customToneId(const std::string& lowerCasedName) {
  std::string id = "custom_";
  for (const char c : text::replacingAll(lowerCasedName, " ", "_")) {
    if ((c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_') {
      id += c;
    }
  }
  return id;
}

}  // namespace

ToneStore::ToneStore(UserDefaults& defaults)
    : ConfigurableStore(defaults, {keys::toneSettings, keys::toneSelection, keys::oldToneSelection}) {
  migrateLegacySelection();
}

std::string ToneStore::displayName(const ToneItem& item) const {
  if (!item.nameKey) {
    return item.name;
  }
  // A key without a translation names nothing in another language; the stored name does.
  std::string localised = tr(item.nameKey->c_str());
  return localised == *item.nameKey ? item.name : localised;
}

ConfigurableStore::Items ToneStore::defaultItems() const {
  Items items;
  for (const auto& tone : toneOptions) {
    items.push_back({text::lowerCased(tone.id), tr(tone.nameKey), tone.nameKey, true, std::ssize(items), false});
  }
  return items;
}

bool ToneStore::addCustomTone(const std::string& name) {
  const std::string trimmed(text::trimmed(name));
  if (trimmed.empty() || text::graphemeCount(trimmed) > longestName) {
    return false;
  }
  const std::string lowerCased = text::lowerCased(trimmed);
  const std::string id = customToneId(lowerCased);
  return append({id, trimmed, std::nullopt, true, 0, true},
                [&](const auto& item) { return text::lowerCased(item.name) == lowerCased || item.id == id; });
}

}  // namespace quillmark
