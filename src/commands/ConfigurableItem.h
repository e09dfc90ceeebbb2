#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace quillmark {

/// An entry of the language list or the tone list.
struct ConfigurableItem {
  std::string id;                      ///< a locale identifier, or a word for a tone
  std::string name;                    ///< what goes into the prompt
  std::optional<std::string> nameKey;  ///< key of the localised name
  bool isEnabled = true;
  std::int64_t order = 0;  ///< lists sort by it, ascending
  bool isCustom = false;

  friend bool operator==(const ConfigurableItem&, const ConfigurableItem&) = default;
};

}  // namespace quillmark
