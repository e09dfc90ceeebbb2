#include <cstdlib>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/posix/DataDirectory.h"
#include "platform/posix/IcuLocaleInfo.h"
#include "platform/posix/PosixMainQueue.h"
#include "platform/posix/SystemInfo.h"

namespace quillmark {
namespace {

using namespace std::chrono_literals;
using testing::AllOf;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

using Variables = std::vector<std::pair<std::string, std::optional<std::string>>>;

/// Sets environment variables, with nothing for absence.
void setEnvironment(const Variables& variables) {
  for (const auto& [name, value] : variables) {
    value ? setenv(name.c_str(), value->c_str(), 1) : unsetenv(name.c_str());
  }
}

TEST(DataDirectory, isTheFirstThatIsGiven) {
  setEnvironment({{"HOME", "/home/me/"}, {"XDG_DATA_HOME", "/data/"}, {"QUILLMARK_DATA_DIR", "/own"}});
  EXPECT_EQ(dataDirectory("/argument/"), "/argument");
  EXPECT_EQ(dataDirectory(), "/own");
  setEnvironment({{"QUILLMARK_DATA_DIR", ""}});
  EXPECT_EQ(dataDirectory(), "/data/quillmark");
  for (const auto& unusable :
       {std::optional<std::string>(), std::optional<std::string>(""), std::optional<std::string>("relative/path")}) {
    setEnvironment({{"XDG_DATA_HOME", unusable}});
    EXPECT_EQ(dataDirectory(), "/home/me/.local/share/quillmark");
  }
}

TEST(PreferredLanguages, comeFromTheFirstVariableThatIsSet) {
  struct Case {
    std::optional<std::string> language, all, messages, lang;
    std::vector<std::string> expected;
  };
  for (const auto& [language, all, messages, lang, expected] : std::vector<Case>{
           {"de_AT:de:en_US:de", "fr_FR.UTF-8", {}, {}, {"de-AT", "de", "en-US"}},
           {"", "fr_FR.UTF-8", "it_IT", "es_ES", {"fr-FR"}},
           {{}, "", "it_IT@euro", "es_ES", {"it-IT"}},
           {{}, {}, {}, "sr_RS.UTF-8@latin", {"sr-Latn-RS"}},
           {{}, {}, {}, "ca_ES@valencia", {"ca-ES-valencia"}},
           {{}, {}, {}, "es_419", {"es-419"}},
           {{}, "C.UTF-8", {}, "de_DE", {"en"}},
           {{}, "POSIX", {}, {}, {"en"}},
           {":::", {}, {}, "nonsense-\r\nX: y", {"en"}},
           {{}, {}, {}, {}, {"en"}},
       }) {
    setEnvironment({{"LANGUAGE", language}, {"LC_ALL", all}, {"LC_MESSAGES", messages}, {"LANG", lang}});
    EXPECT_EQ(IcuLocaleInfo("en").preferredLanguages(), expected);
  }
}

TEST(LocaleNames, areGivenInTheLanguageThatIsAskedFor) {
  const IcuLocaleInfo locale("fr");
  EXPECT_EQ(locale.displayName("de_DE", "de_DE"), "Deutsch (Deutschland)");
  EXPECT_EQ(locale.displayName("de-DE", "en"), "German (Germany)");
  EXPECT_EQ(locale.displayName("pt"), "portugais");
  EXPECT_EQ(locale.displayName("ar_SA", "ar_SA"), "العربية (المملكة العربية السعودية)");
  for (const char* nameless : {"none", "", "xx_YY", "@", "a very long identifier that names no language at all"}) {
    EXPECT_FALSE(locale.displayName(nameless, "en")) << nameless << *locale.displayName(nameless, "en");
  }
  EXPECT_EQ(locale.canonicalIdentifier("de-de"), "de_DE");
  EXPECT_EQ(locale.canonicalIdentifier("zh-hant"), "zh_Hant");
  EXPECT_THAT(locale.availableIdentifiers(),
              AllOf(Contains("de_DE"), Contains("zh_Hant"), Contains("en"), Each(Not(HasSubstr("-")))));
}

TEST(LocaleOrder, isThatOfTheInterfaceLanguage) {
  const IcuLocaleInfo german("de"), swedish("sv");
  EXPECT_LT(german.compareLocalized("Äpfel", "Zebra"), 0);
  EXPECT_GT(swedish.compareLocalized("Äpfel", "Zebra"), 0);
  EXPECT_LT(german.compareLocalized("apfel", "Birne"), 0) << "not by code points";
  EXPECT_EQ(german.compareLocalized("\u00e9", "e\u0301"), 0);
}

TEST(PosixMainQueue, runsWhatOtherThreadsHandInUntilItIsStopped) {
  PosixMainQueue queue;
  std::string trail;
  const auto mainThread = std::this_thread::get_id();
  queue.after(2ms, [&] { trail += 'c'; });
  queue.after(1ms, [&] { trail += 'b'; }).cancel();
  std::thread other([&] {
    queue.async([&] {
      trail += std::this_thread::get_id() == mainThread ? 'a' : '?';
      queue.after(5ms, [&] {
        trail += 'd';
        queue.stop();
      });
    });
  });
  queue.run();
  other.join();
  EXPECT_TRUE(trail == "acd" || trail == "cad") << trail;

  // A stop from elsewhere ends a queue that has nothing to wait for, and the queue can run again.
  std::thread stopping([&] { queue.stop(); });
  queue.run();
  stopping.join();
}

TEST(SystemInfo, readsWhatTheSystemSays) {
  const auto debian = parseOperatingSystem("Linux", "6.1.0-18-amd64");
  EXPECT_EQ(std::tie(debian.major, debian.minor, debian.patch), std::tuple(6, 1, 0));
  const auto odd = parseOperatingSystem("Linux", "5.15-rc3+");
  EXPECT_EQ(std::tie(odd.major, odd.minor, odd.patch), std::tuple(5, 15, 0));
  EXPECT_EQ(parseOperatingSystem("Linux", "").major, 0);
  EXPECT_GT(operatingSystem().major, 1);
  EXPECT_EQ(bundle().executableName, "test_wire");
  EXPECT_THAT(bundle().shortVersion.value_or(""), testing::MatchesRegex("[0-9]+\\.[0-9]+\\.[0-9]+"));
}

}  // namespace
}  // namespace quillmark
