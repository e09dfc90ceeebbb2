#include <gtest/gtest.h>

#include "base/Log.h"
#include "platform/StoredList.h"
#include "support/StoreSet.h"

namespace quillmark {
namespace {

template <class T>
using Reader = std::function<T(const Json&, const std::string&)>;

template <class T>
std::optional<std::vector<T>> decoded(const std::string& bytes, const Reader<T>& reader) {
  try {
    return decodeArray<T>(parseJson(bytes), reader);
  } catch (const DecodingError&) {
    return std::nullopt;
  }
}

/// What a store shows, compared with what a start would find.
template <class T>
void expectShownIsStored(const SimulatedDefaults& defaults, const char* key, const std::vector<T>& shown,
                         const Reader<T>& reader, const std::string& label) {
  const auto value = defaults.value(key);
  if (!value) {
    EXPECT_FALSE(shown.empty()) << label << ": what holds while nothing is stored";
    return;
  }
  const auto* const data = std::get_if<Data>(&*value);
  EXPECT_EQ(decoded<T>(data != nullptr ? data->bytes : std::get<std::string>(*value), reader), shown) << label;
}

void expectShownIsStored(const SimulatedDefaults& defaults, StoreSet& stores, const std::string& label) {
  expectShownIsStored<Command>(defaults, "customPrompts2", stores.commands.prompts, commandFromJson, label);
  expectShownIsStored<ConfigurableItem>(defaults, "languageSettings", stores.languages.items(),
                                        configurableItemFromJson, label);
  expectShownIsStored<ConfigurableItem>(defaults, "toneSettings", stores.tones.items(), configurableItemFromJson,
                                        label);
  expectShownIsStored<Variable>(defaults, "variablesStoreKey", stores.variables.variables, variableFromJson, label);
  expectShownIsStored<ProviderConfig>(defaults, "providerStore", stores.providers.configs, providerConfigFromJson,
                                      label);
  if (defaults.value("models")) {
    expectShownIsStored<ProviderModel>(defaults, "models", stores.models.models, providerModelFromJson, label);
  }
}

TEST(StoredLists, setAsideWhatIsNoUsableListBeforeTheyWriteOverIt) {
  setLogSink([](std::string_view) {});
  const std::pair<std::string, std::string> cases[] = {
      {"customPrompts2", R"([{"name":"mine"},{"name":7}])"},
      {"languageSettings", R"([{"id":"de"}])"},
      {"toneSettings", R"([{"id":"witty"}])"},
      {"variablesStoreKey", R"([{"key":"mine"}])"},
      {"providerStore", R"([{"providerType":"openai","apiKey":"sk"},{"providerType":"future"}])"},
      {"models", R"([{"identifier":"m","providerType":"mistral"}])"}};
  for (const auto& [key, records] : cases) {
    SimulatedDefaults defaults;
    const bool isText = key == "models";
    int number = 0;
    for (const DefaultsValue& bad : {isText ? DefaultsValue(records) : DefaultsValue(Data{records}),
                                     isText ? DefaultsValue("[oops") : DefaultsValue(Data{"[oops"}),
                                     isText ? DefaultsValue(Data{"[]"}) : DefaultsValue("[]")}) {
      defaults.values[key] = bad;
      StoreSet stores(defaults);
      stores.languages.items();
      stores.tones.items();
      EXPECT_TRUE(stores.variables.upsert({Uuid::random(), "name", "Ada", "", false}));
      EXPECT_EQ(defaults.value(key + ".undecodable-" + std::to_string(++number)), bad) << key;
      expectShownIsStored(defaults, stores, key);
    }
  }
  setLogSink({});
}

/// Every way of changing a list; each stores something in the lists of a fresh start with one provider gone.
const std::pair<const char*, std::function<bool(StoreSet&)>> edits[] = {
    {"add a command", [](StoreSet& s) { return s.commands.add(std::nullopt); }},
    {"update a command",
     [](StoreSet& s) {
       Command command = s.commands.prompts->front();
       command.editName("Mine");
       return s.commands.update(command);
     }},
    {"duplicate a command", [](StoreSet& s) { return s.commands.duplicate(s.commands.prompts->front().id); }},
    {"remove all commands", [](StoreSet& s) { return s.commands.save([](auto& list) { list.clear(); }, "remove"); }},
    {"disable a language", [](StoreSet& s) { return s.languages.setEnabled("de", false); }},
    {"add a language", [](StoreSet& s) { return s.languages.addLanguage("de_DE"); }},
    {"disable all tones", [](StoreSet& s) { return s.tones.setAllEnabled(false); }},
    {"reorder the tones", [](StoreSet& s) { return s.tones.reorder({"witty"}); }},
    {"remove tones",
     [](StoreSet& s) {
       return s.tones.remove({"witty", "urgent"}) == 0;
     }},
    {"add a tone", [](StoreSet& s) { return s.tones.addCustomTone("Royal"); }},
    {"add a variable",
     [](StoreSet& s) {
       return s.variables.upsert({Uuid::random(), "sign", "off", "", false});
     }},
    {"remove all variables", [](StoreSet& s) { return s.variables.save([](auto& list) { list.clear(); }); }},
    {"add a provider", [](StoreSet& s) { return s.providers.addConfig(ProviderConfig::make({.name = "Another"})); }},
    {"change a provider and make it the default one",
     [](StoreSet& s) {
       return s.providers.changeConfig(s.providers.configs.get()[2].id, [&s](auto& config) {
         config.apiKey = "key";
         s.providers.defaultProvider.set(config.id.toString());
       });
     }},
    {"delete a provider", [](StoreSet& s) { return s.providers.deleteConfig({s.providers.configs->back().id}); }},
    {"bring providers back", [](StoreSet& s) { return s.providers.addMissingConfigs(); }},
    {"reset the providers", [](StoreSet& s) { return s.providers.resetConfigs(); }},
    {"update models",
     [](StoreSet& s) {
       return s.models.updateModels({{Uuid::random(), "m", ProviderType::xAI, "M", {}, {}}});
     }},
    {"forget models", [](StoreSet& s) { return s.models.cleanUpModels(ProviderType::groq); }},
};

TEST(StoredLists, showWhatIsStoredAndTellWhicheverWriteFails) {
  setLogSink([](std::string_view) {});
  SimulatedDefaults original;
  original.set("apiKey", std::string("sk-old"));
  {
    StoreSet stores(original);
    stores.languages.items();
    ASSERT_TRUE(stores.providers.deleteConfig({stores.providers.configs.get()[3].id}));
  }
  for (const auto& [name, edit] : edits) {
    bool failed = true;
    for (int failing = 1; failed; ++failing) {
      const std::string label = std::string(name) + ", write " + std::to_string(failing);
      SimulatedDefaults defaults;
      defaults.values = original.values;
      StoreSet stores(defaults);
      stores.languages.items();
      stores.tones.items();
      int told = 0;
      const auto refusals = defaults.refused.connect([&told](const std::string&) { ++told; });
      defaults.writes = 0;
      defaults.failingWrite = failing;
      const auto before = defaults.values;
      const bool stored = edit(stores);
      failed = defaults.writes >= failing;
      EXPECT_EQ(stored, !failed) << label;
      EXPECT_EQ(told, failed ? 1 : 0) << label;
      EXPECT_EQ(defaults.values == before, failed) << label << ": all of the edit or nothing";
      expectShownIsStored(defaults, stores, label);
    }
  }
  // A start writes too: on an empty database, and on one of an old version.
  for (const bool isOld : {false, true}) {
    SimulatedDefaults count;
    for (int failing = 1; failing <= 1 + count.writes; ++failing) {
      SimulatedDefaults defaults;
      if (isOld) {
        defaults.values = original.values;
        defaults.values["lastMigratedVersion"] = std::string("2.0.3");
        defaults.values["appVersion"] = std::string("2.13.0");
      }
      count.values = defaults.values;
      count.writes = 0;
      StoreSet(count).tones.items();
      defaults.failingWrite = failing;
      StoreSet stores(defaults);
      expectShownIsStored(defaults, stores, "a start, write " + std::to_string(failing));
      defaults.failingWrite.reset();
      EXPECT_TRUE(stores.commands.add(std::nullopt)) << "the next edit is as good as any";
      expectShownIsStored(defaults, stores, "after a start");
    }
  }
  setLogSink({});
}

TEST(StoredLists, areNotStartedOverByTheSlowerOfTwoFirstStarts) {
  setLogSink([](std::string_view) {});
  SimulatedDefaults theirs;
  ProviderStore elsewhere(theirs);
  elsewhere.load();
  ASSERT_TRUE(elsewhere.changeConfig(elsewhere.configs->front().id, [](auto& config) { config.apiKey = "key"; }));
  SimulatedDefaults mine;
  ProviderStore store(mine);
  // The other process stores its list between the look of this one and its first write.
  const auto meanwhile =
      store.configs.observe([&](const auto&) { mine.values.insert(theirs.values.begin(), theirs.values.end()); });
  store.load();
  EXPECT_EQ(mine.values, theirs.values);
  EXPECT_EQ(store.configs.get(), elsewhere.configs.get());
  setLogSink({});
}

TEST(StoredLists, ofOneProcessFollowTheOther) {
  setLogSink([](std::string_view) {});
  SimulatedDefaults mine;
  StoreSet stores(mine);
  SimulatedDefaults theirs;
  theirs.values = mine.values;
  StoreSet elsewhere(theirs);
  const Uuid counted = stores.commands.prompts->front().id;
  stores.commands.incrementUsage(counted);
  for (const auto& [name, edit] : edits) {
    (void)edit(elsewhere);
  }
  ASSERT_TRUE(elsewhere.commands.initBasePrompts());
  for (const auto& [key, value] : theirs.values) {
    mine.setElsewhere(key, value);
  }
  EXPECT_EQ(stores.providers.configs.get(), elsewhere.providers.configs.get());
  EXPECT_EQ(stores.variables.variables.get(), elsewhere.variables.variables.get());
  EXPECT_EQ(stores.tones.items(), elsewhere.tones.items());
  EXPECT_EQ(stores.models.models.get(), elsewhere.models.models.get());
  EXPECT_EQ(stores.commands.prompts.get(), elsewhere.commands.prompts.get());
  stores.queue.advance(std::chrono::seconds(1));
  elsewhere.queue.advance(std::chrono::seconds(1));
  EXPECT_EQ(stores.commands.searchableCommands->size(), elsewhere.commands.searchableCommands->size());

  // What this process has counted but not stored yet survives what others store.
  const Uuid first = stores.commands.prompts->front().id;
  stores.commands.incrementUsage(first);
  ASSERT_TRUE(elsewhere.commands.add(std::nullopt));
  mine.values = theirs.values;  // not announced yet
  ASSERT_TRUE(stores.commands.add(std::nullopt));
  EXPECT_EQ(stores.commands.prompts->size(), elsewhere.commands.prompts->size() + 1);
  EXPECT_EQ(stores.commands.command(first)->usageCount, 1);

  mine.setElsewhere("customPrompts2", Data{"no list"});
  EXPECT_EQ(stores.commands.prompts->size(), elsewhere.commands.prompts->size() + 1) << "shown is what could be read";
  ASSERT_TRUE(stores.commands.add(std::nullopt));
  EXPECT_EQ(mine.get<Data>("customPrompts2.undecodable-1"), Data{"no list"});
  EXPECT_EQ(stores.commands.prompts->size(), elsewhere.commands.prompts->size() + 2);
  setLogSink({});
}

}  // namespace
}  // namespace quillmark
