#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/Signal.h"
#include "platform/Bundle.h"
#include "platform/InterfaceLanguage.h"
#include "platform/LocaleInfo.h"
#include "platform/UserDefaults.h"

namespace quillmark {

/// The language of this program's own interface. A choice takes effect at the next start; `currentLocale` follows it at
/// once. Main thread only.
class LanguageManager {
 public:
  /// A row of the picker.
  struct Language {
    const char* code;
    const char* name;  ///< in English
    const char* nativeName;

    /// "Deutsch (German)", the part in brackets in the interface language.
    std::string label() const;
  };

  LanguageManager(UserDefaults& defaults, LocaleInfo& locale, const Bundle& bundle);

  InterfaceLanguage debugAppLanguage;     ///< the code of a row; every change is applied, whoever makes it
  Observable<std::string> currentLocale;  ///< identifier of the current language
  Signal<> languageDidChange;             ///< after every change of the current language
  Signal<> willChange;                    ///< emitted before languageDidChange, for views of this object
  static const std::vector<Language>& availableLanguages();

  /// Stores the choice where the system reads it.
  void applyLanguage();
  std::string effectiveLanguageCode() const;

 private:
  void adoptLanguage();

  UserDefaults& defaults_;
  LocaleInfo& locale_;
  std::vector<std::string> localizations_;
  Setting<std::optional<std::vector<std::string>>> appleLanguages_;
  Connection choices_;
  Connection systemChanges_;
};

}  // namespace quillmark
