#include "scenarios/Scenario.h"

namespace quillmark {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

/// The hosted service offers a version, and the running one is 2.13.0.
struct Updates : Scenario {
  static constexpr const char* page = "https://quillmark.example/get/2.14.0";

  void serviceOffers(const std::string& version, const std::string& url = page) {
    desktop.http.onRequest = [body = toText({{"version", version}, {"updateUrl", url}})](const auto& exchange) {
      exchange.answerJson(body);
    };
  }
  void serviceFails() {
    desktop.http.onRequest = [](const auto& exchange) { exchange.fail("No network."); };
  }
  std::size_t versionRequests() const {
    return requestsThat([](const Exchange& exchange) { return exchange.request.url.ends_with("/api/app/version"); })
        .size();
  }
  MenuItem row() const {
    const auto items = app->menuBar().items();
    return *std::prev(std::ranges::find(items, "Quit", &MenuItem::title));
  }
  void checkAutomatically(bool automatic) { desktop.defaults.set("SUEnableAutomaticChecks", automatic); }
};

TEST_F(Updates, areRequestedAndComparedByTheirNumbers) {
  desktop.defaults.set("serviceToken", std::string("t0ken"));
  const std::pair<std::string, bool> cases[] = {
      {"2.14.0", true}, {"2.13.1", true}, {"10.0", true}, {"2.13.0", false}, {"2.9.10", false}};
  auto& service = start().services().appUpdateService;
  for (const auto& [version, isNewer] : cases) {
    serviceOffers(version);
    service.checkForUpdate(true);
    EXPECT_EQ(closeAlert(), "") << version;
    EXPECT_EQ(service.updateAvailable.get(), isNewer) << version;
    EXPECT_EQ(service.newVersion.get(), version);
    EXPECT_TRUE(logged("Current version: 2.13.0. New version: " + version));

    service.checkForUpdate(false);
    EXPECT_EQ(closeAlert(isNewer ? 1 : 0),
              isNewer ? "Update available: A new version of Quillmark " + version +
                            " is available. Do you want to update now?"
                      : "Quillmark Is Up-To-Date: You are on the latest version (2.13.0) of Quillmark.");
    EXPECT_EQ(desktop.alerts.shown.back().style, AlertStyle::informational);
  }
  EXPECT_THAT(desktop.alerts.shown[0].buttons, ElementsAre("Update Now", "Later"));
  EXPECT_TRUE(desktop.workspace.openedUrls.empty());

  const HttpRequest& request = desktop.http.exchanges[0].request;
  EXPECT_EQ(request.method, "GET");
  EXPECT_EQ(request.url, std::string(AppConfig::publicRoot) + "/api/app/version");
  EXPECT_FALSE(request.body.has_value());
  EXPECT_THAT(std::vector(request.headers.begin(), request.headers.begin() + 3),
              ElementsAre(HttpHeader{"Authorization", "Bearer t0ken"}, HttpHeader{"Accept", "application/json"},
                          HttpHeader{"X-AppVersion", "2.13.0"}));
  desktop.defaults.set("appVersion", std::string("2.12.9"));
  service.checkForUpdate(true);
  EXPECT_EQ(desktop.http.exchanges.back().header("X-AppVersion"), "2.12.9") << "as stored";

  serviceFails();
  for (const bool silent : {true, false}) {
    logLines.clear();
    service.checkForUpdate(silent);
    EXPECT_EQ(closeAlert(), silent ? "" : "Unknown Error: URLSessionTask failed with error: No network.");
    EXPECT_TRUE(logged("URLSessionTask failed with error: No network."));
  }
  EXPECT_EQ(service.newVersion.get(), "2.9.10");
}

TEST_F(Updates, openThePageThatIsOfferedOrTheServicesOwn) {
  const std::string ownPage = std::string(AppConfig::publicRoot) + "/download";
  const std::pair<std::string, std::string> cases[] = {
      {page, page}, {"https://not a page", ownPage}, {"", ownPage}, {"--help", ownPage}, {"file:///bin/sh", ownPage},
  };
  auto& service = start().services().appUpdateService;
  for (const auto& [offered, opened] : cases) {
    serviceOffers("2.14.0", offered);
    service.checkForUpdate(false);
    closeAlert();
    EXPECT_EQ(std::exchange(desktop.workspace.openedUrls, {}), std::vector{opened}) << offered;
  }
  service.checkForUpdate(false);
  desktop.queue.settle();
  service.updateAvailable.set(false);
  closeAlert();
  EXPECT_TRUE(desktop.workspace.openedUrls.empty()) << "known to be in vain by now";
}

TEST_F(Updates, areInTheMenuWithRemindersOnFourDays) {
  start();
  auto& delegate = services().updaterDelegate;
  int changes = 0;
  const auto watch = app->menuBar().changed.connect([&] { ++changes; });
  Date found;
  std::vector<Duration> reminders;  // since the latest find
  const auto reminding = services().checkForUpdatesViewModel.shouldShowGentleReminder().observe([&](bool shown) {
    if (shown) {
      reminders.push_back(desktop.queue.now() - found);
    }
  });
  const auto find = [&] {
    found = desktop.queue.now();
    reminders.clear();
    delegate.didFindValidUpdate({"2.14.0", page});
    desktop.queue.settle();
  };
  const auto symbol = [&] { return row().symbol; };
  const std::string reminds = "exclamationmark.arrow.counterclockwise.circle", offers = "arrow.down.circle.fill";

  MenuItem item = row();
  EXPECT_EQ(item.title + ": " + item.help, "Check for Updates…: Check for new app updates");
  EXPECT_EQ(item.symbol, "arrow.counterclockwise.circle");
  EXPECT_TRUE(item.enabled && !item.isAccented);
  find();
  EXPECT_GT(std::exchange(changes, 0), 0);
  item = row();
  EXPECT_EQ(item.title + ": " + item.help,
            "Update to version 2.14.0: A new version is available. Click here to download and install.");
  EXPECT_EQ(item.symbol, offers);
  EXPECT_TRUE(item.isAccented);
  desktop.advance(1h);
  EXPECT_GT(std::exchange(changes, 0), 0);
  EXPECT_EQ(symbol(), reminds);
  desktop.advance(14999ms);
  EXPECT_EQ(symbol(), reminds);
  desktop.advance(1ms);
  EXPECT_EQ(symbol(), offers);
  desktop.advance(24h * 10);
  EXPECT_THAT(reminders, ElementsAre(1h, 24h, 48h, 72h));
  EXPECT_FALSE(desktop.queue.nextDue().has_value()) << "the fourth day ends it";
  EXPECT_EQ(row().title, "Update to version 2.14.0");

  find();
  desktop.advance(50h);
  find();
  desktop.advance(24h * 10);
  EXPECT_THAT(reminders, ElementsAre(1h, 24h, 48h, 72h)) << "those of the first find are gone";
  find();
  desktop.advance(30min);
  delegate.didReceiveUserAttention({});
  desktop.advance(24h * 10);
  EXPECT_THAT(reminders, ElementsAre()) << "not even the one that was on its way";
  find();
  desktop.advance(1h + 5s);
  delegate.didNotFindUpdate();
  desktop.queue.settle();
  EXPECT_EQ(row().title, "Check for Updates…");
  desktop.advance(24h * 10);
  EXPECT_EQ(reminders.size(), 1u);
}

TEST_F(Updates, areCheckedForFromTheMenu) {
  start();
  row().trigger();
  EXPECT_FALSE(row().enabled) << "one check at a time";
  services().updater.checkForUpdates();
  ASSERT_EQ(versionRequests(), 1u);
  desktop.http.exchanges[0].fail("No network.");
  EXPECT_THAT(closeAlert(), StartsWith("Unknown Error: "));
  EXPECT_TRUE(row().enabled);

  serviceOffers("2.13.0");
  row().trigger();
  EXPECT_THAT(closeAlert(), StartsWith("Quillmark Is Up-To-Date: "));
  EXPECT_EQ(row().title, "Check for Updates…");

  serviceOffers("2.14.0");
  row().trigger();
  desktop.queue.settle();
  EXPECT_FALSE(row().enabled) << "not while the alert stands";
  EXPECT_THAT(closeAlert(2), AllOf(StartsWith("Quillmark 2.14.0 Is Available: "),
                                   HasSubstr("The package manager of your system installs updates")));
  EXPECT_THAT(desktop.alerts.shown.back().buttons,
              ElementsAre("Open Download Page", "Skip This Version", "Remind Me Later"));
  EXPECT_EQ(row().title, "Update to version 2.14.0") << "put off, and still on offer";
  EXPECT_TRUE(desktop.workspace.openedUrls.empty());
  desktop.advance(1h);
  EXPECT_EQ(row().symbol, "arrow.down.circle.fill") << "no reminder of what was answered just now";

  row().trigger();
  closeAlert(0);
  EXPECT_EQ(desktop.workspace.openedUrls, std::vector<std::string>{page});
  EXPECT_EQ(row().title, "Check for Updates…");
}

TEST_F(Updates, areCheckedForOnceADayWhileTheUserWantsIt) {
  start();
  serviceOffers("2.13.0");
  desktop.advance(24h * 3);
  EXPECT_EQ(versionRequests(), 0u) << "off unless the user wants them";
  checkAutomatically(true);
  desktop.advance(ServiceUpdater::firstCheck - 1ms);
  checkAutomatically(true);
  EXPECT_EQ(versionRequests(), 0u);
  desktop.advance(1ms);
  EXPECT_EQ(versionRequests(), 1u);
  desktop.advance(24h * 3);
  EXPECT_EQ(versionRequests(), 4u);
  checkAutomatically(false);
  desktop.advance(24h * 3);
  EXPECT_EQ(versionRequests(), 4u);

  checkAutomatically(true);
  start();
  EXPECT_EQ(versionRequests(), 4u) << "a start has better things to do";
  desktop.advance(ServiceUpdater::firstCheck);
  EXPECT_EQ(versionRequests(), 5u);
  EXPECT_TRUE(desktop.alerts.shown.empty());
}

TEST_F(Updates, foundInTheBackgroundRemindAndOpenNothing) {
  checkAutomatically(true);
  start();
  int reminders = 0;
  const auto watch = services().checkForUpdatesViewModel.shouldShowGentleReminder().observe(
      [&](bool shown) { reminders += shown ? 1 : 0; });
  serviceOffers("2.14.0");
  desktop.advance(24h * 10);
  EXPECT_EQ(row().title, "Update to version 2.14.0");
  EXPECT_EQ(std::exchange(reminders, 0), 4) << "finding the same one again begins nothing anew";
  serviceOffers("2.15.0");
  desktop.advance(2h);
  EXPECT_EQ(row().title, "Update to version 2.15.0");
  EXPECT_EQ(reminders, 1);
  serviceOffers("2.13.0");
  desktop.advance(24h);
  EXPECT_EQ(row().title, "Check for Updates…") << "withdrawn";

  serviceOffers("2.14.0");
  desktop.advance(24h);
  serviceFails();
  desktop.advance(24h);
  reminders = 0;
  desktop.advance(48h);
  EXPECT_EQ(reminders, 0) << "a failure stops them";
  EXPECT_EQ(row().title, "Update to version 2.14.0");
  EXPECT_TRUE(logged("Failed to check for updates: URLSessionTask failed with error: No network."));
  serviceOffers("2.14.0");
  desktop.advance(24h * 10);
  EXPECT_EQ(reminders, 4) << "and the next find starts them";
  EXPECT_TRUE(desktop.alerts.shown.empty());
}

TEST_F(Updates, areNoLongerOfferedWhenTheUserSkipsThem) {
  checkAutomatically(true);
  start();
  serviceOffers("2.14.0");
  desktop.advance(ServiceUpdater::firstCheck);
  desktop.advance(CheckForUpdatesViewModel::initialReminderDelay);
  EXPECT_EQ(row().symbol, "exclamationmark.arrow.counterclockwise.circle");
  row().trigger();
  desktop.queue.settle();
  EXPECT_EQ(row().symbol, "arrow.down.circle.fill") << "the user sees it now";
  closeAlert(1);
  EXPECT_FALSE(row().isAccented);
  desktop.advance(24h * 2);
  EXPECT_FALSE(row().isAccented);

  row().trigger();
  EXPECT_THAT(closeAlert(2), StartsWith("Quillmark 2.14.0 Is Available")) << "who asks is told";
  desktop.advance(24h + 1h);
  EXPECT_TRUE(row().isAccented) << "put off until the next check only";
  row().trigger();
  closeAlert(1);
  serviceOffers("2.15.0");
  desktop.advance(24h);
  EXPECT_EQ(row().title, "Update to version 2.15.0");
}

}  // namespace
}  // namespace quillmark
