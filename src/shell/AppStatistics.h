#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>

#include "base/Json.h"
#include "base/Lifetime.h"
#include "execution/UsageRecorder.h"
#include "platform/Bundle.h"
#include "platform/MainQueue.h"
#include "platform/StoredValue.h"
#include "platform/UserDefaults.h"
#include "providers/APIClient.h"

namespace quillmark {

/// The stored record of how the program is used. It holds names and counters, no text of the user's.
struct AppStatisticsData {
  std::map<std::string, std::int64_t> commandUsage;  ///< runs by command name
  std::set<std::string> providerUsage;
  std::int64_t totalRewrites = 0;
  std::int64_t characterCount = 0;
  std::set<std::string> popClipNames;
  std::optional<double> lastUsedDate;  ///< seconds since 2001-01-01 00:00:00 UTC
  std::optional<double> lastSyncDate;
  std::string installationId;
};

Json toJson(const AppStatisticsData& data);
AppStatisticsData appStatisticsFromJson(const Json& json);

/// The hosted service's answer to the counts.
struct StatisticsResponse {
  bool success = false;
  std::optional<std::string> message;
};

StatisticsResponse statisticsResponseFromJson(const Json& json);

/// Counts how the program is used in the defaults database, and sends the totals to the hosted service: once a day at
/// most, a moment after a command has been counted. Every operation reads the whole record and writes it back, in one
/// transaction. Main thread only.
class AppStatistics : public UsageRecorder {
 public:
  static constexpr const char* storageKey = keys::statistics.name;
  /// The leading slash makes two in the URL, which is what the service expects.
  static constexpr const char* syncURL = "/app/statistics";
  static constexpr Duration asyncTimeout = std::chrono::seconds(3);
  static constexpr Duration syncInterval = std::chrono::hours(24);

  AppStatistics(UserDefaults& defaults, MainQueue& queue, const APIClient& client, const OperatingSystem& system);

  /// Also schedules a sync that is due, or postpones a scheduled one.
  void recordCommand(const std::string& name) override;
  void recordProvider(const std::string& name) override;
  void recordPopClipInstall(const std::string& name);

  /// Whether more than a day has passed since the counts were sent.
  bool shouldSync();
  /// Returns at once. A failure is logged, and the sync stays due.
  void syncStatistics();

  /// A new record when there is none that decodes; this does not store it. A record that does not decode is set aside.
  AppStatisticsData read();

 private:
  bool isDue(const AppStatisticsData& data) const;
  /// Returns the record as it is now, changed or not.
  AppStatisticsData edit(const std::function<void(AppStatisticsData&)>& change);

  UserDefaults& defaults_;
  MainQueue& queue_;
  const APIClient& client_;
  std::string osVersion_;
  StoredValue stored_;
  bool isKept_ = true;  // what read() last failed to decode, if anything, has been set aside
  TimerHandle syncTimer_;
  Lifetime lifetime_;
};

}  // namespace quillmark
