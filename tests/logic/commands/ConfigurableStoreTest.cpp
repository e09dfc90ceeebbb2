#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "commands/LanguageFlags.h"
#include "commands/LanguageStore.h"
#include "commands/ListMessages.h"
#include "commands/ToneStore.h"
#include "platform/posix/IcuLocaleInfo.h"
#include "platform/simulated/SimulatedDefaults.h"

namespace quillmark {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;

struct Lists : testing::Test {
  SimulatedDefaults defaults;
  IcuLocaleInfo english{"en"};

  static std::vector<std::string> ids(const ConfigurableStore::Items& items) {
    std::vector<std::string> result;
    for (const auto& item : items) {
      result.push_back(item.id);
    }
    return result;
  }
  Json stored(const std::string& key) { return parseJson(defaults.get<Data>(key)->bytes); }
};

TEST_F(Lists, startWithTheBuiltInItems) {
  LanguageStore languages(defaults, english);
  EXPECT_EQ(languages.items().size(), 27u);
  EXPECT_EQ(languages.items().front().id, "ar");
  EXPECT_EQ(languages.items().back(), (LanguageItem{"vi", "vi", std::nullopt, true, 26, false}));
  EXPECT_EQ(stored("languageSettings").size(), 27u);

  IcuLocaleInfo german("de");
  SimulatedDefaults elsewhere;
  EXPECT_EQ(LanguageStore(elsewhere, german).items()[1].id, "zh") << "Chinesisch follows Arabisch";

  ToneStore tones(defaults);
  EXPECT_EQ(tones.items().size(), 12u);
  EXPECT_EQ(stored("toneSettings")[8],
            parseJson(R"({"id":"punchier","name":"Punchier","nameKey":"Punchier","isEnabled":true,"order":8,
                          "isCustom":false})"));
}

TEST_F(Lists, keepWhatIsNoListOfDistinctNamedItems) {
  const std::string item = R"({"id":"a","name":"A","isEnabled":true,"order":0,"isCustom":false})";
  for (const std::string& bad : {std::string("[]"), "[" + item + "," + item + "]", std::string("oops"),
                                 std::string(R"([{"id":"a","name":"","isEnabled":true,"order":0,"isCustom":false}])"),
                                 std::string(R"([{"id":"a","name":"A","isEnabled":true,"isCustom":false}])")}) {
    defaults.values = {{"toneSettings", Data{bad}}};
    EXPECT_EQ(ToneStore(defaults).items().size(), 12u) << bad;
    EXPECT_EQ(stored("toneSettings").size(), 12u) << bad;
    EXPECT_EQ(defaults.get<Data>("toneSettings.undecodable-1"), Data{bad});
  }
  defaults.values = {{"toneSettings", Data{}}};
  EXPECT_EQ(ToneStore(defaults).items().size(), 12u) << "no bytes are no list";
  EXPECT_FALSE(defaults.value("toneSettings.undecodable-1"));
  defaults.values = {{"toneSettings", Data{"[" + item + "]"}}};
  EXPECT_THAT(ids(ToneStore(defaults).items()), ElementsAre("a"));
}

TEST_F(Lists, neverReplaceWhatTheyCouldNotKeep) {
  defaults.values = {{"toneSettings", Data{"mine"}}};
  defaults.diskIsFull = true;
  ToneStore tones(defaults);
  EXPECT_EQ(tones.items().size(), 12u);
  EXPECT_FALSE(tones.addCustomTone("Royal"));
  EXPECT_EQ(tones.items().size(), 12u);
  EXPECT_EQ(defaults.get<Data>("toneSettings"), Data{"mine"});
  defaults.diskIsFull = false;
  EXPECT_TRUE(tones.addCustomTone("Royal"));
  EXPECT_EQ(defaults.get<Data>("toneSettings.undecodable-1"), Data{"mine"});
}

TEST_F(Lists, areReorderedAndShortenedButNeverEmptied) {
  ToneStore tones(defaults);
  EXPECT_TRUE(tones.setAllEnabled(false));
  EXPECT_FALSE(tones.defaultItem().has_value());
  for (const char* id : {"witty", "urgent", "casual"}) {
    EXPECT_TRUE(tones.setEnabled(id, true));
  }
  EXPECT_TRUE(tones.reorder({"urgent", "nobody", "witty", "urgent"}));
  EXPECT_THAT(ids(tones.enabledItems()), ElementsAre("urgent", "witty", "casual"));
  EXPECT_EQ(tones.items()[1].order, 2) << "an unknown id leaves its place empty";
  EXPECT_EQ(tones.items()[2].order, 2) << "the first that was not named counts the ones before it";
  EXPECT_EQ(tones.items().size(), 12u);

  std::vector<std::string> all = ids(tones.items());
  all.emplace_back("nobody");
  EXPECT_EQ(tones.remove(all), 2u);
  ASSERT_EQ(tones.items().size(), 1u);
  EXPECT_EQ(tones.items()[0].order, 0);
  EXPECT_THAT(ids(ToneStore(defaults).items()), ElementsAre(tones.items()[0].id));
}

TEST_F(Lists, tellHowADeletionEnded) {
  EXPECT_EQ(ListMessages::tones.deletionQuestion(1).text, "Are you sure you want to delete this tone?");
  EXPECT_EQ(ListMessages::languages.deletionQuestion(3),
            (ListMessages::Message{"Delete Languages", "Are you sure you want to delete 3 languages?"}));
  EXPECT_FALSE(ListMessages::tones.deletionFailure(0, 3).has_value());
  EXPECT_EQ(ListMessages::tones.deletionFailure(1, 3)->text,
            "Some tones could not be deleted. This would leave no tones remaining.");
  EXPECT_EQ(ListMessages::languages.deletionFailure(1, 1)->text,
            "Unable to delete selected languages. This would leave no languages remaining.");
}

TEST_F(Lists, rememberTheSelectionForTheShortcut) {
  LanguageStore languages(defaults, english);
  EXPECT_EQ(languages.defaultItem()->id, "ar");
  EXPECT_TRUE(languages.setDefaultSelection("de"));
  EXPECT_FALSE(languages.setDefaultSelection("tlh"));
  EXPECT_EQ(LanguageStore(defaults, english).defaultItem()->id, "de");
  EXPECT_TRUE(languages.setEnabled("de", false));
  EXPECT_EQ(languages.defaultItem()->id, "ar");
  EXPECT_EQ(languages.defaultSelection(), "de");
}

TEST_F(Lists, takeOverTheSelectionOfAnOldVersionOnce) {
  defaults.set("defaultLanguage", std::string("fr"));
  defaults.set("defaultTone", std::string("Royal"));
  EXPECT_EQ(LanguageStore(defaults, english).defaultItem()->id, "fr");
  EXPECT_FALSE(defaults.value("defaultLanguage").has_value());
  EXPECT_EQ(ToneStore(defaults).defaultItem()->id, "professional");
  EXPECT_EQ(defaults.get<std::string>("defaultTone"), "Royal") << "what nobody could take over stays";
}

TEST_F(Lists, languagesAreNamedAndFlagged) {
  LanguageStore languages(defaults, english);
  const auto shown = [&](const std::string& id, bool isCustom = false) {
    return languages.displayName({id, "stored name", std::nullopt, true, 0, isCustom});
  };
  EXPECT_EQ(shown("de_CH"), "\U0001F1E8\U0001F1ED German (Switzerland)");
  EXPECT_EQ(shown("zh_Hant"), "\U0001F1F9\U0001F1FC Chinese (Traditional)");
  EXPECT_EQ(shown("cy"), "\U0001F3F4\U000E0067\U000E0062\U000E0077\U000E006C\U000E0073\U000E007F Welsh");
  EXPECT_EQ(shown("es_US").substr(0, 8), "\U0001F1EA\U0001F1F8") << "not in the table, so its language's flag";
  EXPECT_EQ(shown("xx"), "stored name");
  EXPECT_EQ(shown("ja", true), "\U0001F1EF\U0001F1F5 stored name");
  EXPECT_FALSE(languageFlag("").has_value());
}

TEST_F(Lists, languagesAreAddedAsTheSystemWritesThem) {
  LanguageStore languages(defaults, english);
  const auto available = languages.availableLanguages();
  EXPECT_THAT(available, Contains("de_CH"));
  EXPECT_THAT(available, Not(Contains("de")));
  EXPECT_THAT(available, Not(Contains("zh_Hans_CN")));
  EXPECT_THAT(std::vector(available.begin(), available.begin() + 2), ElementsAre("af", "af_NA"));

  for (const char* refused : {"", "de", "de-CH", "DE_ch"}) {
    EXPECT_FALSE(languages.addLanguage(refused)) << refused;
  }
  EXPECT_TRUE(languages.addLanguage("de_CH"));
  EXPECT_EQ(languages.items().back(), (LanguageItem{"de_CH", "de_CH", std::nullopt, true, 27, false}));
}

TEST_F(Lists, customTonesHaveOneNameAndOneId) {
  ToneStore tones(defaults);
  auto all = ids(tones.items());
  all.insert(all.begin(), "nobody");
  EXPECT_TRUE(tones.reorder(all));
  EXPECT_TRUE(tones.addCustomTone("  Tr\u00e8s bien! \n"));
  EXPECT_EQ(tones.items().back(), (ToneItem{"custom_trs_bien", "Tr\u00e8s bien!", std::nullopt, true, 12, true}));
  EXPECT_TRUE(tones.addCustomTone("\u738b\u69d8"));
  EXPECT_EQ(tones.items().back().id, "custom_");
  for (const char* refused : {" ", "professional", "TR\u00c8S BIEN!", "\u5973\u738b"}) {
    EXPECT_FALSE(tones.addCustomTone(refused)) << refused;
  }
  // Letters with a combining accent count once each.
  std::string name;
  for (int i = 0; i < 50; ++i) {
    name += "e\u0301";
  }
  EXPECT_FALSE(ListMessages::problemWithTone(name).has_value());
  EXPECT_EQ(ListMessages::problemWithTone(name + "x")->text, "Tone name must be 50 characters or less.");
  EXPECT_FALSE(tones.addCustomTone(name + "x"));
  EXPECT_TRUE(tones.addCustomTone(name));
}

}  // namespace
}  // namespace quillmark
