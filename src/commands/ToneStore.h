#pragma once

#include <string>

#include "commands/ConfigurableStore.h"

namespace quillmark {

/// The tones that change-tone commands offer. Main thread only.
class ToneStore final : public ConfigurableStore {
 public:
  static constexpr std::size_t longestName = 50;  ///< in grapheme clusters

  explicit ToneStore(UserDefaults& defaults);

  /// The tone in the interface language.
  std::string displayName(const ToneItem& item) const override;
  Items defaultItems() const override;

  /// White space around the name is ignored. False also for an empty or too long name, and for one that exists already
  /// or would have the id of another.
  [[nodiscard]] bool addCustomTone(const std::string& name);
};

}  // namespace quillmark
