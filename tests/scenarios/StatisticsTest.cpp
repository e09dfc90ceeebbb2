#include "scenarios/Scenario.h"

namespace quillmark {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

struct Statistics : Scenario {
  AppStatistics& statistics() { return services().statistics; }
  std::vector<const Exchange*> syncs() const { return requestsThat(isSyncOfCounts); }
  /// Counts a command and lets the following sync be sent.
  const Exchange& sync() {
    statistics().recordCommand("Summarize");
    desktop.advance(AppStatistics::asyncTimeout);
    return *syncs().back();
  }
};

TEST_F(Statistics, areSentThreeSecondsAfterTheLastCommand) {
  desktop.defaults.set("useLocalApi", true);
  desktop.defaults.set("serviceToken", std::string("t0ken"));
  desktop.operatingSystem = {"Linux", 12, 0, 34};
  desktop.queue.setNow(Date{std::chrono::sys_days{std::chrono::January / 2 / 2001}});
  start();
  desktop.defaults.set("appVersion", std::string("not the bundle's"));
  editorWith("text");
  run(ActionCase::summarize);
  desktop.advance(100ms);  // counted when the text is there
  for (int i = 0; i < 3; ++i) {
    desktop.advance(2999ms);
    EXPECT_TRUE(syncs().empty());
    statistics().recordCommand("Mine");
  }
  statistics().recordProvider("Local");
  statistics().recordProvider("Local");
  statistics().recordPopClipInstall("Summarize");
  desktop.advance(2999ms);
  EXPECT_TRUE(syncs().empty());
  desktop.advance(1ms);
  ASSERT_EQ(syncs().size(), 1u);

  const HttpRequest& request = syncs()[0]->request;
  EXPECT_EQ(request.method, "POST");
  EXPECT_EQ(request.url, "http://127.0.0.1:3030/api//app/statistics");
  EXPECT_THAT(std::vector(request.headers.begin(), request.headers.begin() + 3),
              ElementsAre(HttpHeader{"Authorization", "Bearer t0ken"}, HttpHeader{"Accept", "application/json"},
                          HttpHeader{"X-AppVersion", "2.13.0"}));
  Json body = parseJson(*request.body);
  EXPECT_EQ(body["osVersion"], "Linux 12.0.34");
  Json& sent = body["statistics"];
  EXPECT_TRUE(logged("Syncing statistics: " + toText(sent)));
  EXPECT_TRUE(Uuid::parse(sent["installationId"].get<std::string>()));
  sent.erase("installationId");
  EXPECT_NEAR(sent["lastUsedDate"].get<double>(), 24 * 60 * 60 + 70.097, 1e-4) << "seconds since 2001";
  sent.erase("lastUsedDate");
  EXPECT_EQ(body, parseJson(R"({"osVersion":"Linux 12.0.34","statistics":{"commandUsage":{"Mine":3,"Summarize":1},)"
                            R"("providerUsage":["Local"],"totalRewrites":4,"characterCount":0,)"
                            R"("popClipNames":["Summarize"]}})"));
}

TEST_F(Statistics, areSentAgainWhenMoreThanADayHasPassed) {
  start();
  sync().answerJson(R"({"success":true,"message":"thanks"})");
  desktop.queue.settle();
  const Date synced = desktop.queue.now();
  for (const auto later : {0h, -1000h, 24h}) {
    desktop.queue.setNow(synced + later);
    EXPECT_FALSE(statistics().shouldSync()) << later.count() << ": a day exactly, or a calendar that was set back";
  }
  statistics().recordCommand("Summarize");
  desktop.advance(10s);
  EXPECT_EQ(syncs().size(), 1u);

  const auto installation = statistics().read().installationId;
  start();
  EXPECT_EQ(syncs().size(), 1u) << "not before a command is counted";
  const Json sent = parseJson(*sync().request.body)["statistics"];
  EXPECT_EQ(syncs().size(), 2u);
  EXPECT_EQ(sent["totalRewrites"], 3) << "the totals, every time";
  EXPECT_EQ(sent["installationId"], installation);
  EXPECT_TRUE(sent.contains("lastSyncDate"));
}

TEST_F(Statistics, keepWhatIsCountedDuringASync) {
  start();
  const Exchange& underWay = sync();
  statistics().recordCommand("Translate");
  statistics().recordProvider("Local");
  underWay.answerJson(R"({"success":true})");
  desktop.queue.settle();
  const auto data = statistics().read();
  EXPECT_EQ(data.totalRewrites, 2);
  EXPECT_EQ(data.commandUsage.at("Translate"), 1);
  EXPECT_EQ(data.providerUsage, std::set<std::string>{"Local"});
  EXPECT_TRUE(data.lastSyncDate);
}

TEST_F(Statistics, thatDidNotArriveAreDueAgain) {
  start();
  const struct {
    std::function<void(const Exchange&)> respond;
    std::string line;
  } cases[] = {
      {[](const auto& exchange) { exchange.answerJson(R"({"success":false,"message":"not now"})"); }, ""},
      {[](const auto& exchange) { exchange.answer(500, "application/json", R"({"success":true})"); },
       "Response status code was unacceptable: 500."},
      {[](const auto& exchange) { exchange.fail("No network."); }, "URLSessionTask failed with error: No network."},
      {[](const auto& exchange) { exchange.answerJson("{}"); },
       "Response could not be decoded because of error:\nsuccess: is missing"},
  };
  for (const auto& [respond, line] : cases) {
    const Exchange& exchange = sync();
    logLines.clear();
    respond(exchange);
    desktop.queue.settle();
    if (line.empty()) {
      EXPECT_THAT(logLines, ElementsAre());
    } else {
      EXPECT_THAT(logLines, ElementsAre("Failed to sync statistics: " + line));
    }
    EXPECT_FALSE(statistics().read().lastSyncDate) << line;
  }
  EXPECT_EQ(syncs().size(), std::size(cases)) << "only with the next command";
  EXPECT_TRUE(desktop.alerts.shown.empty());
}

TEST_F(Statistics, startOverWhenTheStoredOnesCanNotBeRead) {
  start();
  const auto previous = statistics().read().installationId;
  const DefaultsValue bad[] = {Data{"{"}, Data{R"({"commandUsage":{"Summarize":5}})"}, std::string("no data")};
  int number = 0;
  for (const auto& value : bad) {
    desktop.defaults.set(AppStatistics::storageKey, value);
    statistics().recordCommand("Summarize");
    const auto data = statistics().read();
    EXPECT_EQ(data.totalRewrites, 1);
    EXPECT_EQ(data.commandUsage, (std::map<std::string, std::int64_t>{{"Summarize", 1}}));
    EXPECT_NE(data.installationId, previous);
    EXPECT_EQ(desktop.defaults.value("quillmark.statistics.undecodable-" + std::to_string(++number)), value);
  }
}

}  // namespace
}  // namespace quillmark
