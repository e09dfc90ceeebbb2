#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "base/Json.h"

namespace quillmark {

/// An entry of the language list or the tone list.
struct ConfigurableItem {
  std::string id;                      ///< a locale identifier, or a word for a tone
  std::string name;                    ///< inserted into the prompt
  std::optional<std::string> nameKey;  ///< key of the localised name
  bool isEnabled = true;               ///< offered in menus
  std::int64_t order = 0;              ///< lists are sorted by it, ascending
  bool isCustom = false;               ///< made by the user

  friend bool operator==(const ConfigurableItem&, const ConfigurableItem&) = default;
};

using LanguageItem = ConfigurableItem;
using ToneItem = ConfigurableItem;

Json toJson(const ConfigurableItem& item);
/// Throws DecodingError. Everything but `nameKey` is required.
ConfigurableItem configurableItemFromJson(const Json& json, const std::string& path = {});

}  // namespace quillmark
