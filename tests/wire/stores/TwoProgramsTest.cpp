#include <fstream>

#include <gtest/gtest.h>
#include <poll.h>

#include "base/Log.h"
#include "platform/posix/SqliteUserDefaults.h"
#include "support/OtherProcess.h"
#include "support/Process.h"
#include "support/StoreSet.h"
#include "support/TemporaryDirectory.h"

namespace quillmark {
namespace {

TEST(TwoPrograms, writeAtTheSameTimeWithoutLosingAKey) {
  setLogSink([](std::string_view) {});
  const TemporaryDirectory directory;
  SqliteUserDefaults defaults(directory / "defaults.sqlite");
  const int descriptor = defaults.changeDescriptor();
  StoreSet stores(defaults);
  Setting<bool> useLocalApi(defaults, keys::useLocalApi);
  int toldOfSetting = 0;
  const auto observed = useLocalApi.observe([&toldOfSetting](bool value) { toldOfSetting += value ? 1 : 0; });

  // While the stores of this process edit, the command line writes settings one after another.
  constexpr int settings = 40;
  const std::string script = "for i in $(seq " + std::to_string(settings) +
                             "); do \"$0\" --data-dir \"$1\" defaults write setting$i int $i || exit 1; done; "
                             "\"$0\" --data-dir \"$1\" defaults write useLocalApi bool true";
  Process other({"/bin/sh", "-c", script, QUILLMARK_PROGRAM, directory.path()},
                {{"HOME", directory.path()}, {"PATH", "/usr/bin:/bin"}}, {.output = directory / "output"});
  int edits = 0;
  while (other.running()) {
    const std::string name = "Edit " + std::to_string(++edits);
    const Command command = Command::make(name, std::nullopt, name, std::nullopt, CommandCategory::customAction);
    EXPECT_TRUE(stores.commands.add(command));
    (void)stores.variables.upsert({Uuid::random(), "key" + std::to_string(edits), name, "", false});
  }
  EXPECT_EQ(other.exitStatus(), 0) << readFile(directory / "output");
  pollfd readable{descriptor, POLLIN, 0};
  ASSERT_GT(poll(&readable, 1, 20'000), 0);
  defaults.handleChange();
  EXPECT_EQ(toldOfSetting, 1);
  EXPECT_TRUE(useLocalApi.get());

  SqliteUserDefaults fresh(directory / "defaults.sqlite");
  for (int i = 1; i <= settings; ++i) {
    EXPECT_EQ(fresh.get<std::int64_t>("setting" + std::to_string(i)), i);
  }
  const StoreSet loaded(fresh);
  EXPECT_EQ(loaded.commands.prompts.get(), stores.commands.prompts.get());
  EXPECT_EQ(loaded.variables.variables.get(), stores.variables.variables.get());
  EXPECT_EQ(loaded.variables.variables.get().size(), static_cast<std::size_t>(edits) + 2);
  setLogSink({});
}

TEST(TwoPrograms, mayEditOneListAtTheSameTime) {
  setLogSink([](std::string_view) {});
  const TemporaryDirectory directory;
  { const StoreSet stores(*std::make_unique<SqliteUserDefaults>(directory / "defaults.sqlite")); }
  constexpr int processes = 8;
  constexpr int edits = 12;
  std::vector<std::unique_ptr<OtherProcess>> others;
  for (int process = 0; process < processes; ++process) {
    others.push_back(std::make_unique<OtherProcess>(std::vector<std::function<bool()>>{[&, process] {
      SqliteUserDefaults theirs(directory / "defaults.sqlite");
      StoreSet stores(theirs);
      std::ofstream stored(directory / std::to_string(process));
      for (int i = 0; i < edits; ++i) {
        const std::string name = std::to_string(process) + "." + std::to_string(i);
        const bool good = i % 2 == 0 ? stores.variables.upsert({Uuid::random(), name, "", "", false})
                                     : stores.providers.addConfig(ProviderConfig::make({.name = name, .slug = name}));
        stored << (good ? name + "\n" : "");
      }
      return stored.flush().good();
    }}));
  }
  for (const auto& other : others) {
    other->begin();
  }
  for (const auto& other : others) {
    EXPECT_TRUE(other->finish());
  }
  SqliteUserDefaults defaults(directory / "defaults.sqlite");
  const StoreSet stores(defaults);
  std::size_t reported = 0;
  for (int process = 0; process < processes; ++process) {
    std::ifstream stored(directory / std::to_string(process));
    for (std::string name; std::getline(stored, name); ++reported) {
      EXPECT_TRUE(std::ranges::count(stores.variables.variables.get(), name, &Variable::key) == 1 ||
                  std::ranges::count(stores.providers.configs.get(), name, &ProviderConfig::slug) == 1)
          << name;
    }
  }
  EXPECT_GT(reported, std::size_t{processes * edits / 2});
  setLogSink({});
}

}  // namespace
}  // namespace quillmark
