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

  /// The flag, if there is one, and the language's name in the interface language.
  std::string displayName(const LanguageItem& item) const override;
  Items defaultItems() const override;

  /// Identifiers that could be added, sorted by display name: a language, or a language with one region or script.
  std::vector<std::string> availableLanguages();
  /// False also for an identifier already in the list, or one not in the system's canonical form.
  [[nodiscard]] bool addLanguage(const std::string& id);

 private:
  /// In the interface language, without a flag.
  std::optional<std::string> localName(const std::string& identifier) const;
  void sortByName(std::vector<std::string>& identifiers) const;

  const LocaleInfo& locale_;
  // The names are needed after every change of a command, and the interface language never changes while the program
  // runs.
  mutable std::unordered_map<std::string, std::optional<std::string>> names_;
};

}  // namespace quillmark
