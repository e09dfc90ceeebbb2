#include <fstream>

#include <gtest/gtest.h>

#include "base/Log.h"
#include "platform/posix/SqliteUserDefaults.h"
#include "support/OtherProcess.h"
#include "support/StoreSet.h"
#include "support/TemporaryDirectory.h"

namespace quillmark {
namespace {

TEST(TwoPrograms, mayCreateTheStoresAndEditOneListAtTheSameTime) {
  setLogSink([](std::string_view) {});
  const TemporaryDirectory directory;
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
        const bool good =
            i % 2 == 0 ? stores.variables.upsert({Uuid::random(), name, "", "", false})
                       : stores.commands.add(Command::make(name, std::nullopt, "", std::nullopt, CommandCategory::seo));
        stored << (good && theirs.set("setting " + name, true) ? name + "\n" : "");
      }
      return stored.flush().good() && !theirs.problem() && !theirs.setAside();
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
                  std::ranges::count(stores.commands.prompts.get(), name, &Command::name) == 1)
          << name;
      EXPECT_TRUE(defaults.value("setting " + name));
    }
  }
  EXPECT_GT(reported, std::size_t{processes * edits / 2});
  setLogSink({});
}

}  // namespace
}  // namespace quillmark
