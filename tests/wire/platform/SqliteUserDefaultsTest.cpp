#include <cmath>
#include <csignal>
#include <fstream>
#include <iterator>
#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "base/Log.h"
#include "platform/posix/SqliteUserDefaults.h"
#include "support/OtherProcess.h"
#include "support/TemporaryDirectory.h"

namespace quillmark {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

using Strings = std::vector<std::string>;

std::string bytesOf(const std::string& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

void overwrite(const std::string& file, std::string_view bytes) {
  std::ofstream(file, std::ios::binary | std::ios::trunc)
      .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

mode_t modeOf(const std::string& file) {
  struct stat status {};
  return stat(file.c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
}

bool isReadable(int descriptor, int milliseconds = 0) {
  pollfd watched{descriptor, POLLIN, 0};
  return poll(&watched, 1, milliseconds) == 1;
}

struct StoredDefaults : testing::Test {
  StoredDefaults() {
    setLogSink([this](std::string_view line) { lines.emplace_back(line); });
  }
  ~StoredDefaults() override { setLogSink({}); }

  TemporaryDirectory directory;
  std::string file = directory / "data/defaults.sqlite";
  std::vector<std::string> lines;
};

TEST_F(StoredDefaults, everyValueComesBackAsTheTypeItWas) {
  const std::vector<std::pair<std::string, DefaultsValue>> values{
      {"yes", true},
      {"no", false},
      {"one", std::int64_t{1}},
      {"smallest", std::numeric_limits<std::int64_t>::min()},
      {"whole double", 1.0},
      {"tiny double", 5e-324},
      {"endless", std::numeric_limits<double>::infinity()},
      {"text", std::string("1")},
      {"no text", std::string()},
      {"text with everything", std::string("é\0\n😀'\"", 11)},
      {"data", Data{std::string("\0\xff\xfe", 3)}},
      {"no data", Data{}},
      {"large", Data{std::string(200'000, 'x')}},
      {"list", Strings{"de", "", "a\"b\nc"}},
      {"no list", Strings{}},
      {std::string("key\0with ' all", 14), true},
  };
  {
    SqliteUserDefaults defaults(file);
    for (const auto& [key, value] : values) {
      EXPECT_TRUE(defaults.set(key, value));
      EXPECT_EQ(defaults.value(key), value) << key;
    }
    EXPECT_TRUE(defaults.set("not a number", std::nan("")));
    defaults.set("short-lived", true);
    defaults.remove("short-lived");
  }
  const SqliteUserDefaults reopened(file);
  for (const auto& [key, value] : values) {
    EXPECT_EQ(reopened.value(key), value) << key;
  }
  EXPECT_TRUE(std::isnan(reopened.get<double>("not a number").value_or(0)));
  EXPECT_FALSE(reopened.value("short-lived"));
  EXPECT_FALSE(reopened.value("key")) << "a key is more than its part before a null character";
  EXPECT_FALSE(reopened.get<std::int64_t>("yes")) << "a boolean is no number";
  EXPECT_THAT(lines, IsEmpty());
}

TEST_F(StoredDefaults, onlyTheOwnerCanReadThem) {
  umask(0);
  SqliteUserDefaults defaults(file);
  ASSERT_TRUE(defaults.set("serviceToken", std::string("secret")));
  umask(022);
  EXPECT_EQ(modeOf(directory / "data"), 0700u);
  EXPECT_EQ(modeOf(file), 0600u);
  EXPECT_EQ(modeOf(file + "-wal"), 0600u);
  EXPECT_EQ(modeOf(file + "-shm"), 0600u);
}

TEST_F(StoredDefaults, aCopyThatOthersCouldReadIsClosedToThem) {
  { SqliteUserDefaults(file).set("key", true); }
  chmod(file.c_str(), 0644);
  const SqliteUserDefaults defaults(file);
  EXPECT_EQ(modeOf(file), 0600u);
  EXPECT_EQ(defaults.get<bool>("key"), true);
}

TEST_F(StoredDefaults, observersAreToldOfEverySetAndOfARealRemoval) {
  SqliteUserDefaults defaults(file);
  static constexpr StoredKey<bool> key{"setting", true, ""};
  Setting<bool> setting(defaults, key);
  std::vector<std::string> heard;
  const auto all = defaults.changed.connect([&](const std::string& changed) { heard.push_back(changed); });
  std::vector<bool> values;
  const auto bound = setting.observe([&](bool value) { values.push_back(value); });

  setting.set(false);
  setting.set(false);
  defaults.remove("setting");
  defaults.remove("setting");
  EXPECT_THAT(heard, ElementsAre("setting", "setting", "setting"));
  EXPECT_THAT(values, ElementsAre(false, false, true));
}

TEST_F(StoredDefaults, aTransactionStoresAllOrNothingAndSeesWhatIsStoredNow) {
  std::optional<SqliteUserDefaults> theirs;
  OtherProcess other({[&] { return theirs.emplace(file).set("count", std::int64_t{5}); },
                      [&] { return theirs->get<std::int64_t>("count") == 6 && !theirs->value("gone"); }});
  SqliteUserDefaults defaults(file);
  defaults.set("count", std::int64_t{1});
  defaults.set("gone", true);
  const auto revision = defaults.revision("count");
  std::vector<std::string> heard;
  const auto connection = defaults.changed.connect([&](const std::string& key) { heard.push_back(key); });
  ASSERT_TRUE(other.step());

  const auto count = [&](bool isMeant) {
    return defaults.transaction([&, isMeant] {
      defaults.set("count", *defaults.get<std::int64_t>("count") + 1);
      const bool joined = defaults.transaction([&] { return defaults.remove("gone"); });
      EXPECT_THAT(heard, IsEmpty()) << "nobody hears of what may still be undone";
      return joined && isMeant;
    });
  };
  EXPECT_FALSE(count(false));
  EXPECT_EQ(defaults.get<std::int64_t>("count"), 5);
  EXPECT_TRUE(defaults.value("gone"));
  EXPECT_TRUE(count(true));
  EXPECT_THAT(heard, ElementsAre("count", "gone"));
  EXPECT_NE(defaults.revision("count"), revision);
  EXPECT_EQ(defaults.revision("gone"), 0u);
  EXPECT_TRUE(other.step());
}

TEST_F(StoredDefaults, changesOfAnotherProcessAreSeenAndReported) {
  std::optional<SqliteUserDefaults> theirs;
  OtherProcess other({
      [&] { return theirs.emplace(file).set("shared", std::int64_t{2}) && theirs->set("new", true); },
      [&] {
        theirs->remove("mine");
        return theirs->set("list", Strings{"a"});
      },
      [&] { return theirs->get<std::string>("answer") == "from here"; },
  });
  SqliteUserDefaults mine(file);
  mine.set("shared", std::int64_t{1});
  mine.set("mine", true);
  mine.set("untouched", true);
  std::vector<std::string> heard;
  const int descriptor = mine.changeDescriptor();
  const auto connection = mine.changed.connect([&](const std::string& key) { heard.push_back(key); });
  ASSERT_GE(descriptor, 0);
  EXPECT_FALSE(isReadable(descriptor));

  ASSERT_TRUE(other.step());
  EXPECT_EQ(mine.get<std::int64_t>("shared"), 2) << "reading is never behind";
  EXPECT_TRUE(isReadable(descriptor, 30'000));
  mine.handleChange();
  EXPECT_THAT(heard, ElementsAre("new", "shared"));
  EXPECT_FALSE(isReadable(descriptor)) << "nothing wakes the program again";

  heard.clear();
  ASSERT_TRUE(other.step());
  ASSERT_TRUE(isReadable(descriptor, 30'000));
  mine.handleChange();
  EXPECT_THAT(heard, ElementsAre("list", "mine"));
  EXPECT_FALSE(mine.value("mine"));

  heard.clear();
  mine.set("answer", std::string("from here"));
  mine.handleChange();
  EXPECT_THAT(heard, ElementsAre("answer")) << "one's own changes are told once";
  EXPECT_TRUE(other.step());
}

TEST_F(StoredDefaults, aWatcherIsWokenOnlyWhenThereIsSomethingToSee) {
  // The watcher reads once per wake-up, as an event loop does, and must see each write.
  constexpr int writes = 50;
  std::optional<SqliteUserDefaults> theirs;
  OtherProcess other({[&] {
    theirs.emplace(file);
    for (int i = 1; i <= writes; ++i) {
      if (!theirs->set("count", std::int64_t{i})) {
        return false;
      }
    }
    return true;
  }});
  SqliteUserDefaults mine(file);
  const int descriptor = mine.changeDescriptor();
  std::int64_t seen = 0;
  const auto connection =
      mine.changed.connect([&](const std::string& key) { seen = mine.get<std::int64_t>(key).value_or(0); });
  other.begin();
  while (seen < writes && isReadable(descriptor, 30'000)) {
    mine.handleChange();
  }
  EXPECT_EQ(seen, writes);
  EXPECT_TRUE(other.finish());
}

TEST_F(StoredDefaults, aProcessKilledWhileItWritesLeavesWhatWasStoredAndNothingHalf) {
  const auto text = [](std::int64_t number) {
    return Data{std::string(150'000, static_cast<char>('a' + number % 26))};
  };
  std::int64_t stored = 0;
  for (int round = 0; round < 20; ++round) {
    OtherProcess other({[&]() -> bool {
      SqliteUserDefaults theirs(file);
      for (auto i = stored + 1;; ++i) {
        (void)theirs.transaction([&] { return theirs.set("store", text(i)) && theirs.set("count", i); });
      }
    }});
    other.begin();
    std::int64_t seen = stored;
    {
      SqliteUserDefaults mine(file);
      const int descriptor = mine.changeDescriptor();
      for (int i = 0; i < 3 + round % 4; ++i) {
        ASSERT_TRUE(isReadable(descriptor, 30'000));
        mine.handleChange();
        seen = mine.get<std::int64_t>("count").value_or(seen);
      }
    }
    other.kill();
    const SqliteUserDefaults after(file);
    EXPECT_FALSE(after.setAside());
    stored = after.get<std::int64_t>("count").value_or(0);
    EXPECT_GE(stored, seen) << "what was stored is there";
    EXPECT_TRUE(stored == 0 || after.get<Data>("store") == text(stored)) << "all of an edit or nothing";
  }
  EXPECT_GT(stored, 20);
}

TEST_F(StoredDefaults, aDamagedFileIsSetAsideWithItsBytes) {
  {
    SqliteUserDefaults defaults(file);
    for (int i = 0; i < 40; ++i) {
      defaults.set("key" + std::to_string(i), Data{std::string(3'000, 'x')});
    }
  }
  const std::string good = bytesOf(file);
  ASSERT_GT(good.size(), 100'000u);
  std::string bad = good;
  std::fill(bad.begin() + 40'000, bad.begin() + 60'000, '\xAA');

  std::vector<std::pair<std::string, std::string>> kept;
  for (const std::string& bytes :
       {std::string("this is no database, but somebody's text\n"), bad, good.substr(0, 50'000), good.substr(0, 700)}) {
    overwrite(file, bytes);
    lines.clear();
    SqliteUserDefaults defaults(file);
    ASSERT_TRUE(defaults.setAside()) << bytes.size();
    EXPECT_THAT(*defaults.setAside(), testing::StartsWith(file + ".damaged-20"));
    kept.emplace_back(*defaults.setAside(), bytes);
    EXPECT_THAT(lines, ElementsAre(HasSubstr(*defaults.setAside())));
    EXPECT_FALSE(defaults.problem());
    EXPECT_FALSE(defaults.value("key1"));
    EXPECT_TRUE(defaults.set("key1", true));
  }
  for (const auto& [place, bytes] : kept) {
    EXPECT_EQ(bytesOf(place), bytes) << "nothing the user made is lost, not even by the next damage";
  }
}

TEST_F(StoredDefaults, aLogWithoutItsDatabaseIsSetAsideToo) {
  std::optional<SqliteUserDefaults> theirs;
  {
    OtherProcess other({[&] { return theirs.emplace(file).set("key", std::string("kept in the log")); }});
    ASSERT_TRUE(other.step());
  }  // killed: the log stays
  ASSERT_THAT(bytesOf(file + "-wal"), HasSubstr("kept in the log"));
  overwrite(file, "");
  const SqliteUserDefaults defaults(file);
  ASSERT_TRUE(defaults.setAside());
  EXPECT_THAT(bytesOf(*defaults.setAside() + "-wal"), HasSubstr("kept in the log"));
}

TEST_F(StoredDefaults, whatIsNotDamagedIsNeverSetAside) {
  std::filesystem::create_directories(file);  // a directory in its place
  SqliteUserDefaults defaults(file);
  EXPECT_FALSE(defaults.setAside());
  EXPECT_TRUE(defaults.problem());
  EXPECT_FALSE(defaults.set("key", true));
  EXPECT_FALSE(defaults.value("key"));
  defaults.remove("key");
  EXPECT_EQ(defaults.changeDescriptor(), -1);
}

TEST_F(StoredDefaults, onAFullDiskTheOldValueStays) {
  OtherProcess other({[this] {
    SqliteUserDefaults defaults(file);
    const bool stored = defaults.set("key", std::string("old"));
    // A limit on the size of files fails writes as a full disk does.
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit small{100'000, RLIM_INFINITY};
    setrlimit(RLIMIT_FSIZE, &small);
    lines.clear();
    bool told = false;
    int refusals = 0;
    const auto connection = defaults.changed.connect([&](const std::string&) { told = true; });
    const auto refused = defaults.refused.connect([&](const std::string&) { ++refusals; });
    const auto fill = [&] { return defaults.set("key", std::string(300'000, 'x')); };
    const bool allRefused = !fill() && !defaults.transaction([&] { return defaults.set("first", true) && fill(); });
    const rlimit large{RLIM_INFINITY, RLIM_INFINITY};
    setrlimit(RLIMIT_FSIZE, &large);
    return stored && allRefused && !told && refusals == 2 && lines.size() == 2 && !defaults.value("first") &&
           defaults.get<std::string>("key") == "old" && defaults.set("key", std::string("new"));
  }});
  EXPECT_TRUE(other.step());
  EXPECT_EQ(SqliteUserDefaults(file).get<std::string>("key"), "new");
}

TEST_F(StoredDefaults, inAPlaceThatCannotBeWrittenTheyCanBeRead) {
  { SqliteUserDefaults(file).set("key", std::string("old")); }
  chmod(file.c_str(), 0444);
  chmod((directory / "data").c_str(), 0555);
  chmod(directory.path().c_str(), 0755);
  OtherProcess other({[this] {
    if (geteuid() == 0 && seteuid(65534) != 0) {
      return false;
    }
    lines.clear();
    SqliteUserDefaults defaults(file);
    return !defaults.problem() && defaults.get<std::string>("key") == "old" &&
           !defaults.set("key", std::string("new")) && defaults.get<std::string>("key") == "old" && lines.size() == 1;
  }});
  EXPECT_TRUE(other.step());
  chmod((directory / "data").c_str(), 0755);
}

}  // namespace
}  // namespace quillmark
