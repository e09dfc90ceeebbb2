#include <chrono>
#include <cstdio>
#include <random>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "base/Log.h"
#include "platform/posix/SqliteUserDefaults.h"
#include "support/OtherProcess.h"
#include "support/StoreSet.h"
#include "support/TemporaryDirectory.h"

namespace quillmark {
namespace {

const char* const listKeys[] = {"customPrompts2", "variablesStoreKey", "providerStore", "languageSettings",
                                "toneSettings"};
constexpr int kindsOfEdits = 6;

Uuid idOf(int number) {
  std::array<char, 37> text{};
  std::snprintf(text.data(), text.size(), "00000000-0000-4000-8000-%012d", number);
  return *Uuid::parse(text.data());
}

/// One edit as a user makes it on a screen; each changes one list. Its effect depends on its number alone.
void edit(StoreSet& stores, int number) {
  const std::string size(static_cast<std::size_t>(number % 17 * 700), 'x');
  switch (number % kindsOfEdits) {
    case 0: {
      Command command = Command::make("Command " + std::to_string(number), std::nullopt, size, std::nullopt,
                                      CommandCategory::customAction);
      command.id = idOf(number);
      (void)stores.commands.add(command);
      break;
    }
    case 1: {
      auto list = stores.commands.prompts.get();
      if (list.size() > 40) {
        list.erase(list.begin() + 20, list.end());
        (void)stores.commands.save([&](auto& stored) { stored = std::move(list); }, "remove prompts");
      } else {
        list.back().content = size + "edited";
        (void)stores.commands.update(list.back());
      }
      break;
    }
    case 2:
      (void)stores.variables.upsert({idOf(number), "key" + std::to_string(number % 30), size, "", false});
      break;
    case 3: {
      ProviderConfig config = stores.providers.configs.get()[static_cast<std::size_t>(number) % 9];
      config.apiKey = "key " + std::to_string(number);
      (void)stores.providers.updateConfig(config);
      break;
    }
    case 4:
      (void)stores.languages.setEnabled(stores.languages.items()[static_cast<std::size_t>(number) % 27].id,
                                        number % 4 == 0);
      break;
    default:
      if (stores.tones.items().size() > 20) {
        stores.tones.remove({stores.tones.items()[3].id, stores.tones.items()[7].id});
      } else {
        (void)stores.tones.addCustomTone("Tone " + std::to_string(number));
      }
  }
}

struct Crash : testing::Test {
  Crash() {
    setLogSink([](std::string_view) {});
  }
  ~Crash() override { setLogSink({}); }

  TemporaryDirectory directory;
  std::string file = directory.path() + "/defaults.sqlite";
};

TEST_F(Crash, leavesEachListAsItWasBeforeTheEditOrAfterIt) {
  constexpr int kills = 200;
  // What the lists should hold: the same edits made in memory.
  SimulatedDefaults expected;
  ASSERT_TRUE(OtherProcess({[this] {
                SqliteUserDefaults defaults(file);
                defaults.set("lastMigratedVersion", std::string("2.13.0"));
                StoreSet stores(defaults);
                return stores.variables.save([](auto&) {});
              }}).step());
  {
    const SqliteUserDefaults defaults(file);
    for (const char* key : listKeys) {
      expected.set(key, *defaults.value(key));
    }
    expected.set("lastMigratedVersion", *defaults.value("lastMigratedVersion"));
  }

  std::mt19937 random(2'026);
  int next = 0;       // the number of the first edit that is not known to be stored
  int inBetween = 0;  // kills between the begin and the end of an edit
  for (int kill = 0; kill < kills; ++kill) {
    std::array<int, 2> progress{};
    ASSERT_EQ(pipe(progress.data()), 0);
    OtherProcess writer({[&]() -> bool {
      SqliteUserDefaults defaults(file);
      StoreSet stores(defaults);
      for (int number = next;; ++number) {
        // The number when the edit begins and its complement when it is stored.
        if (write(progress[1], &number, sizeof number) != sizeof number) {
          return false;
        }
        edit(stores, number);
        const int stored = ~number;
        if (write(progress[1], &stored, sizeof stored) != sizeof stored) {
          return false;
        }
      }
    }});
    writer.begin();
    close(progress[1]);
    int report = 0;
    ASSERT_EQ(read(progress[0], &report, sizeof report), static_cast<ssize_t>(sizeof report));
    ASSERT_EQ(report, next);
    std::this_thread::sleep_for(std::chrono::microseconds(random() % 20'000));
    writer.kill();
    int begun = next;
    int stored = next - 1;
    while (read(progress[0], &report, sizeof report) == static_cast<ssize_t>(sizeof report)) {
      (report < 0 ? stored : begun) = report < 0 ? ~report : report;
    }
    close(progress[0]);
    inBetween += begun > stored ? 1 : 0;

    StoreSet before(expected);
    for (int number = next; number <= stored; ++number) {
      edit(before, number);
    }
    SimulatedDefaults after;
    after.values = expected.values;
    if (begun > stored) {
      StoreSet stores(after);
      edit(stores, begun);
    }

    // A fresh process that loads every store finds each list in one of the two states, and all of them usable.
    ASSERT_TRUE(OtherProcess({[&] {
                  SqliteUserDefaults defaults(file);
                  const StoreSet stores(defaults);
                  bool good = !defaults.setAside() && !defaults.problem();
                  for (const char* key : listKeys) {
                    const auto value = defaults.value(key);
                    good = good && (value == expected.value(key) || value == after.value(key)) &&
                           !defaults.value(std::string(key) + ".undecodable-1");
                  }
                  return good;
                }}).step())
        << "after kill " << kill << ", edit " << begun;

    const SqliteUserDefaults defaults(file);
    bool wasStored = false;
    for (const char* key : listKeys) {
      wasStored = wasStored || defaults.value(key) != expected.value(key);
    }
    next = begun;
    if (wasStored) {
      expected.values = after.values;
    }
    if (wasStored || stored == begun) {
      ++next;
    }
  }
  std::printf("killed %d times, %d of them within an edit; %d edits\n", kills, inBetween, next);
  EXPECT_GT(inBetween, kills / 10);
}

}  // namespace
}  // namespace quillmark
