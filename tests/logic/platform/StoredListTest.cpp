#include <map>
#include <random>

#include <gtest/gtest.h>

#include "base/Log.h"
#include "platform/StoredList.h"
#include "support/StoreSet.h"

namespace quillmark {
namespace {

/// Changes a stored value as a bad disk, an editor or another version of the program might.
class Mutator {
 public:
  explicit Mutator(std::uint32_t seed) : random_(seed) {}

  std::string mutate(std::string text) {
    for (std::size_t changes = 1 + below(4); changes > 0; --changes) {
      mutateOnce(text);
    }
    return text;
  }
  std::size_t below(std::size_t limit) { return random_() % limit; }

 private:
  void mutateOnce(std::string& text) {
    static const char* const pieces[] = {
        "null",  "true",         "-1",          "1e999", "9223372036854775808", "0.5",  "[]", "{}",   "\"\"",
        "\"a\"", "\"isCustom\"", "\"\\ud800\"", "\xFF",  "\xE2\x80\xA8",        "\\u0", ",",  "[[[[", "}}}}",
    };
    const std::size_t at = below(text.size() + 1);
    const std::size_t length = std::min(below(40), text.size() - at);
    switch (below(7)) {
      case 0:
        if (at < text.size()) {
          text[at] = static_cast<char>(text[at] ^ static_cast<char>(1 << below(8)));
        }
        break;
      case 1:
        text.erase(at, length);
        break;
      case 2:
        text.insert(at, text.substr(at, length));
        break;
      case 3:
        text.resize(at);
        break;
      case 4:
        text.replace(at, length, pieces[below(std::size(pieces))]);
        break;
      default:
        replaceValue(text, pieces[below(std::size(pieces))]);
    }
  }

  /// A change that usually leaves the text valid JSON: one token between two delimiters is replaced.
  void replaceValue(std::string& text, const char* piece) {
    const auto start = text.find(':', below(text.size() + 1));
    if (start != std::string::npos) {
      const auto end = text.find_first_of(",}", start);
      text.replace(start + 1, (end == std::string::npos ? text.size() : end) - start - 1, piece);
    }
  }

  std::mt19937 random_;
};

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

/// A start on a mutated value: either the store holds all of its records, or its bytes are kept.
template <class T>
void expectNothingLost(const SimulatedDefaults& defaults, const std::string& key, const std::string& bytes,
                       const std::vector<T>& held, const Reader<T>& reader, int& understood) {
  const auto records = decoded<T>(bytes, reader);
  if (records && *records == held) {
    ++understood;
  } else if (!bytes.empty() && !(records && records->empty())) {
    ASSERT_EQ(defaults.get<Data>(key + ".undecodable-1"), Data{bytes}) << key;
  }
  const auto stored = defaults.get<Data>(key);
  ASSERT_TRUE(stored);
  ASSERT_EQ(decoded<T>(stored->bytes, reader), held) << key;
}

/// The same for the models, which are stored as text and which a start adds to, so that what it read is not all it
/// holds.
void expectNoModelLost(const SimulatedDefaults& defaults, const std::string& text,
                       const std::vector<ProviderModel>& held, int& understood) {
  const auto records = decoded<ProviderModel>(text, providerModelFromJson);
  if (!records) {
    ASSERT_TRUE(text.empty() || defaults.get<std::string>("models.undecodable-1") == text);
    return;
  }
  ++understood;
  for (const auto& record : *records) {
    ASSERT_TRUE(std::ranges::any_of(held, [&](const auto& model) {
      return model.providerType == record.providerType && model.identifier == record.identifier;
    })) << record.identifier;
  }
  const auto stored = decoded<ProviderModel>(*defaults.get<std::string>("models"), providerModelFromJson);
  ASSERT_EQ(stored, held);
}

TEST(StoredLists, loseNothingOfTenThousandMutatedValues) {
  setLogSink([](std::string_view) {});
  SimulatedDefaults original;
  original.set("lastMigratedVersion", std::string("2.13.0"));  // what is missing stays missing
  {
    StoreSet stores(original);
    Command own = Command::make("Own \u00fc\u4e2d", std::nullopt, "{{name}} \"x\"\n", "model", CommandCategory::seo);
    own.behavior = ActionBehavior::insertAfterSelection;
    ASSERT_TRUE(stores.commands.add(own));
    ASSERT_TRUE(stores.variables.upsert({Uuid::random(), "sign", "off", "how letters end", false}));
    ASSERT_TRUE(stores.tones.addCustomTone("Royal"));
  }

  constexpr int values = 10'000;
  int understood = 0;
  Mutator mutator(20'261'123);
  const char* const keys[] = {"customPrompts2",    "languageSettings", "toneSettings",
                              "variablesStoreKey", "providerStore",    "models"};
  for (int i = 0; i < values && !testing::Test::HasFatalFailure(); ++i) {
    const std::string key = keys[mutator.below(std::size(keys))];
    const bool isText = key == "models";
    const std::string bytes = mutator.mutate(isText ? *original.get<std::string>(key) : original.get<Data>(key)->bytes);
    SimulatedDefaults defaults;
    defaults.values = original.values;
    defaults.values[key] = isText ? DefaultsValue(bytes) : DefaultsValue(Data{bytes});

    StoreSet stores(defaults);
    ASSERT_TRUE(stores.variables.save([](auto&) {}));
    const auto check = [&]<class T>(const std::vector<T>& held, T (*reader)(const Json&, const std::string&)) {
      expectNothingLost<T>(defaults, key, bytes, held, reader, understood);
    };
    if (key == "customPrompts2") {
      check(stores.commands.prompts.get(), commandFromJson);
    } else if (key == "languageSettings") {
      check(stores.languages.items(), configurableItemFromJson);
    } else if (key == "toneSettings") {
      check(stores.tones.items(), configurableItemFromJson);
    } else if (key == "variablesStoreKey") {
      check(stores.variables.variables.get(), variableFromJson);
    } else if (isText) {
      expectNoModelLost(defaults, bytes, stores.models.models.get(), understood);
    } else {
      check(stores.providers.configs.get(), providerConfigFromJson);
    }
  }
  setLogSink({});
  // With far fewer, the mutations would only test the parser.
  EXPECT_GT(understood, values / 20);
  RecordProperty("understood", understood);
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
