#pragma once

#include <memory>
#include <string>

#include "platform/LocaleInfo.h"

namespace quillmark {

/// The user's languages as language tags: from LANGUAGE (a list, most preferred first), or else the first of LC_ALL,
/// LC_MESSAGES and LANG that is set. A LANGUAGE set by this program itself is ignored.
std::vector<std::string> languagesOfEnvironment();

/// Languages from ICU's tables, and the user's preferences from the environment. Costs nothing until it is used.
class IcuLocaleInfo final : public LocaleInfo {
 public:
  /// The language of the interface, such as "de" or "de_DE".
  explicit IcuLocaleInfo(std::string interfaceLanguage);
  ~IcuLocaleInfo() override;

  std::vector<std::string> preferredLanguages() const override { return languagesOfEnvironment(); }
  std::vector<std::string> availableIdentifiers() const override;
  std::string canonicalIdentifier(std::string_view identifier) const override;
  std::optional<std::string> displayName(std::string_view identifier, std::string_view inLocale) const override;
  std::optional<std::string> displayName(std::string_view identifier) const override;
  int compareLocalized(std::string_view a, std::string_view b) const override;

 private:
  struct Order;  // ICU's collator

  std::string interfaceLanguage_;
  mutable std::unique_ptr<Order> order_;
};

/// A locale name of the C library ("de_DE.UTF-8", "sr_RS@latin") as a language tag ("de-DE", "sr-Latn-RS"). "C" and
/// "POSIX" are English; nothing for a name that has no such form.
std::optional<std::string> languageTag(std::string_view localeName);

}  // namespace quillmark
