#pragma once

#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "commands/ConfigurableStore.h"
#include "platform/LocaleInfo.h"

namespace quillmark {

/// The languages that translate commands offer. Main thread only.
class LanguageStore final : public ConfigurableStore {
 public:
  LanguageStore(UserDefaults& defaults, const LocaleInfo& locale);

  /// The language as the interface language calls it, behind its flag if it has one.
  std::string displayName(const LanguageItem& item) const override;
  Items defaultItems() const override;

  /// Identifiers that could be added, by display name: a language, or a language with one region or script.
  std::vector<std::string> availableLanguages();
  /// False also for an identifier that is there already, or that the system writes differently.
  [[nodiscard]] bool addLanguage(const std::string& id);

 private:
  /// In the interface language, without a flag.
  std::optional<std::string> localName(const std::string& identifier) const;
  void sortByName(std::vector<std::string>& identifiers) const;

  const LocaleInfo& locale_;
  // The names are asked for with every change of a command, and the interface language never changes in a run.
  mutable std::unordered_map<std::string, std::optional<std::string>> names_;
};

}  // namespace quillmark
