#pragma once

#include <optional>
#include <string>
#include <vector>

#include "commands/ConfigurableItem.h"
#include "platform/LocaleInfo.h"

namespace quillmark {

/// The languages that translate commands offer. Holds the built-in list; it is not editable yet.
class LanguageStore {
 public:
  explicit LanguageStore(const LocaleInfo& locale) : locale_(locale) {}

  /// In ascending order.
  std::vector<ConfigurableItem> enabledItems() const;
  /// What the translate shortcut uses.
  std::optional<ConfigurableItem> defaultItem() const;
  /// The language as the interface language calls it.
  std::string displayName(const ConfigurableItem& item) const;

 private:
  const LocaleInfo& locale_;
};

}  // namespace quillmark
