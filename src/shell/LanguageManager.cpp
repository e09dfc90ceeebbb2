#include "shell/LanguageManager.h"

#include "base/Localization.h"
#include "base/Log.h"

namespace quillmark {

std::string LanguageManager::Language::label() const {
  return code == std::string_view(systemLanguage) ? tr(nativeName) : std::string(nativeName) + " (" + tr(name) + ")";
}

const std::vector<LanguageManager::Language>& LanguageManager::availableLanguages() {
  static const std::vector<Language> languages{
      {systemLanguage, trLater("System Default"), trLater("System Default")},
      {"en", trLater("English"), "English"},
      {"de", trLater("German"), "Deutsch"},
      {"es", trLater("Spanish"), "Español"},
      {"fr", trLater("French"), "Français"},
      {"it", trLater("Italian"), "Italiano"},
      {"nl", trLater("Dutch"), "Nederlands"},
      {"pl", trLater("Polish"), "Polski"},
      {"pt", trLater("Portuguese"), "Português"},
      {"ro", trLater("Romanian"), "Română"},
      {"ru", trLater("Russian"), "Русский"},
      {"tr", trLater("Turkish"), "Türkçe"},
      {"zh", trLater("Chinese"), "中文"},
  };
  return languages;
}

LanguageManager::LanguageManager(UserDefaults& defaults, LocaleInfo& locale, const Bundle& bundle)
    : debugAppLanguage(defaults),
      defaults_(defaults),
      locale_(locale),
      localizations_(bundle.localizations),
      appleLanguages_(defaults, keys::appleLanguages) {
  applyLanguage();
  currentLocale.set(effectiveLanguageCode());
  choices_ = debugAppLanguage.observe([this](const std::string&) {
    applyLanguage();
    adoptLanguage();
  });
  systemChanges_ = locale_.currentLocaleDidChange.connect([this] {
    if (debugAppLanguage.get() == systemLanguage) {
      adoptLanguage();
    }
  });
}

void LanguageManager::applyLanguage() {
  const std::string choice = debugAppLanguage.get();
  if (choice == systemLanguage) {
    appleLanguages_.set(std::nullopt);
  } else if (appleLanguages_.get() != std::vector{choice}) {
    appleLanguages_.set(std::vector{choice});
  }
  defaults_.synchronize();
  log("Applied language setting: " + choice);
}

void LanguageManager::adoptLanguage() {
  currentLocale.set(effectiveLanguageCode());
  willChange.emit();
  languageDidChange.emit();
}

std::string LanguageManager::effectiveLanguageCode() const {
  return quillmark::effectiveLanguageCode(debugAppLanguage.get(),
                                          preferredLocalizations(localizations_, locale_.preferredLanguages()));
}

}  // namespace quillmark
