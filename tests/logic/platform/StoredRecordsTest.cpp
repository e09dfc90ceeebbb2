#include <map>
#include <random>

#include <gtest/gtest.h>

#include "base/Log.h"
#include "platform/StoredRecords.h"
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

  /// A change that usually leaves the text valid JSON: one token between two delimiters becomes another one.
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
std::optional<std::vector<T>> decoded(const std::string& bytes, const typename StoredRecords<T>::Reader& reader) {
  try {
    return decodeArray<T>(parseJson(bytes), reader);
  } catch (const DecodingError&) {
    return std::nullopt;
  }
}

/// What a start makes of a mutated value: either the store holds every record of it, or its bytes are kept.
template <class T>
void expectNothingLost(const SimulatedDefaults& defaults, const std::string& key, const std::string& bytes,
                       const std::vector<T>& held, const typename StoredRecords<T>::Reader& reader, int& understood) {
  const auto records = decoded<T>(bytes, reader);
  if (records && *records == held) {
    ++understood;
  } else if (!(records && records->empty())) {
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
    stores.commands.add(own);
    stores.variables.upsert({Uuid::random(), "sign", "off", "how letters end", false});
    stores.tones.addCustomTone("Royal");
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
    stores.variables.save();
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
  // Were it much less, the mutations would only try the parser.
  EXPECT_GT(understood, values / 20);
  RecordProperty("understood", understood);
}

}  // namespace
}  // namespace quillmark
