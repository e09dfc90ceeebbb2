#pragma once

#include <optional>
#include <string>
#include <vector>

#include "commands/ConfigurableItem.h"

namespace quillmark {

/// The tones that change-tone commands offer. Holds the built-in list; it is not editable yet.
class ToneStore {
 public:
  /// In ascending order.
  std::vector<ConfigurableItem> enabledItems() const;
  /// What the change-tone shortcut uses.
  std::optional<ConfigurableItem> defaultItem() const;
  /// The tone in the interface language.
  static std::string displayName(const ConfigurableItem& item);
};

}  // namespace quillmark
