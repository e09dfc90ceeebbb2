#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/Signal.h"

namespace quillmark {

/// Names and order of languages. Identifiers are of the form "de", "de_DE", "zh_Hant". Main thread only.
class LocaleInfo {
 public:
  LocaleInfo() = default;
  LocaleInfo(const LocaleInfo&) = delete;
  LocaleInfo& operator=(const LocaleInfo&) = delete;
  virtual ~LocaleInfo() = default;

  /// The user's languages in order of preference as language tags, such as "de-DE"; at least one.
  virtual std::vector<std::string> preferredLanguages() const = 0;
  /// Every identifier known to the system.
  virtual std::vector<std::string> availableIdentifiers() const = 0;
  /// The identifier in the form in which the system writes it.
  virtual std::string canonicalIdentifier(std::string_view identifier) const = 0;

  /// The name of `identifier` in the language of `inLocale`, such as "Deutsch (Deutschland)"; nothing when the system
  /// has none.
  virtual std::optional<std::string> displayName(std::string_view identifier, std::string_view inLocale) const = 0;
  /// The same in the language of the interface.
  virtual std::optional<std::string> displayName(std::string_view identifier) const = 0;

  /// The user has changed the language of the system.
  Signal<> currentLocaleDidChange;

  /// Negative, 0 or positive, by the collation of the interface language.
  virtual int compareLocalized(std::string_view a, std::string_view b) const = 0;
};

}  // namespace quillmark
