#include <clocale>

#include "base/Localization.h"
#include "platform/InterfaceLanguage.h"
#include "scenarios/Scenario.h"
#include "shell/LocaleViewModel.h"

namespace quillmark {
namespace {

using testing::ElementsAre;
using Choice = std::optional<std::vector<std::string>>;

TEST(InterfaceLanguageChoice, isTheUsersElseTheSystemsElseEnglish) {
  const std::vector<std::string> available{"de", "en", "pt", "zh"};
  EXPECT_THAT(preferredLocalizations(available, {"de-AT", "sv-SE", "de", "zh-Hant-TW", "en-GB"}),
              ElementsAre("de", "zh", "en"));
  EXPECT_EQ(effectiveLanguageCode("fr", {"de"}), "fr");
  EXPECT_EQ(effectiveLanguageCode("system", {"de", "en"}), "de");
  EXPECT_EQ(effectiveLanguageCode("system", {}), "en");
}

struct Languages : Scenario {
  Choice atLaunch() { return desktop.defaults.get<std::vector<std::string>>("AppleLanguages"); }
};

TEST_F(Languages, followTheUserElseTheSystemAndAreStoredWhereTheNextStartLooks) {
  desktop.defaults.set("AppleLanguages", std::vector<std::string>{"it", "fr"});
  desktop.locale.languages = {"de-DE"};
  auto& languages = start().services().languageManager;
  EXPECT_EQ(languages.currentLocale.get(), "de");
  EXPECT_EQ(atLaunch(), std::nullopt);
  EXPECT_TRUE(logged("Applied language setting: system"));

  std::vector<std::string> told;
  const auto changes = languages.languageDidChange.connect([&] { told.push_back(languages.currentLocale.get()); });
  desktop.locale.languages = {"es-MX", "de"};
  desktop.locale.currentLocaleDidChange.emit();
  languages.debugAppLanguage.set("fr");
  desktop.locale.languages = {"en"};
  desktop.locale.currentLocaleDidChange.emit();
  EXPECT_THAT(told, ElementsAre("es", "fr"));
  EXPECT_EQ(atLaunch(), Choice({"fr"}));
  EXPECT_EQ(start().services().languageManager.effectiveLanguageCode(), "fr");
}

TEST_F(Languages, andDialectsAreNamedInTheirOwnWords) {
  const auto& rows = LanguageManager::availableLanguages();
  ASSERT_EQ(rows.size(), 13u);
  EXPECT_EQ(rows[0].label(), "System Default");
  EXPECT_EQ(rows[2].label(), "Deutsch (German)");
  const LocaleViewModel dialects(desktop.locale);
  std::string order;
  for (const auto& dialect : dialects.locales) {
    order += dialect + " ";
  }
  EXPECT_EQ(
      order,
      "none en_US en_GB en_CA en_AU en_IN de_DE de_AT de_CH de_IT de_LI es_ES es_US es_MX fr_FR fr_CA fr_CH fr_BE "
      "fr_CI fr_CG it_IT pt_BR pt_PT ar_SA ar_AE ar_EG ar_MA ar_TN ");
  EXPECT_EQ(dialects.label("none"), "None");
  EXPECT_EQ(dialects.label("de_DE"), "Deutsch (Deutschland)");
  EXPECT_EQ(dialects.label("ar_TN"), "ar_TN") << "the system has no name for it";
}

/// The built catalogues, without their locales on the system.
struct Translations : Scenario {
  Translations() { setenv("LC_ALL", "C", 1); }
  ~Translations() override {
    localization::useLanguage("en", QUILLMARK_CATALOGUES);
    unsetenv("LC_ALL");
  }
  std::vector<std::string> menuTitles() {
    std::vector<std::string> titles;
    for (const auto& item : start().menuBar().items()) {
      titles.push_back(item.title);
    }
    return titles;
  }
};

TEST_F(Translations, areSwitchedWithoutASystemLocale) {
  EXPECT_THAT(localization::availableLanguages(QUILLMARK_CATALOGUES), testing::IsSupersetOf({"de", "en", "es", "fr"}));
  for (const auto& [code, quit, grammar] :
       std::vector<std::array<const char*, 3>>{{"de", "Beenden", "Grammatik und Rechtschreibung korrigieren"},
                                               {"fr", "Quitter", "Corriger la grammaire et l’orthographe"},
                                               {"tlh", "Quit", "Fix Grammar & Spelling"},
                                               {"es", "Salir", "Corregir gramática y ortografía"},
                                               {"en", "Quit", "Fix Grammar & Spelling"}}) {
    localization::useLanguage(code, QUILLMARK_CATALOGUES);
    EXPECT_THAT(menuTitles(), testing::IsSupersetOf({quit, grammar})) << code;
  }
  EXPECT_EQ(commandOf(ActionCase::fixGrammar).slug, "grammatik-und-rechtschreibung-korrigieren")
      << "a command keeps the name that it was stored with";
  EXPECT_STREQ(std::setlocale(LC_NUMERIC, nullptr), "C");
}

TEST_F(Translations, fillInTheirParameter) {
  localization::useLanguage("de", QUILLMARK_CATALOGUES);
  EXPECT_EQ(tr("Translate to {}", "Deutsch"), "Übersetzen in Deutsch");
  start();
  const auto& all = app->promptStore().searchableCommands.get();
  EXPECT_TRUE(
      std::ranges::any_of(all, [](const Command& command) { return command.name == "Tonfall ändern: Locker"; }));
}

}  // namespace
}  // namespace quillmark
