#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>

#include "base/Json.h"
#include "execution/UsageRecorder.h"
#include "platform/MainQueue.h"
#include "platform/UserDefaults.h"

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

/// Counts runs in the defaults database. Every operation reads the whole record and writes it back. Nothing is sent
/// anywhere yet.
class AppStatistics : public UsageRecorder {
 public:
  static constexpr const char* storageKey = keys::statistics.name;

  AppStatistics(UserDefaults& defaults, const MainQueue& queue) : defaults_(defaults), queue_(queue) {}

  void recordCommand(const std::string& name) override;
  void recordProvider(const std::string& name) override;

  /// A new record when there is none that decodes; reading stores nothing.
  AppStatisticsData read() const;

 private:
  void write(const AppStatisticsData& data);

  UserDefaults& defaults_;
  const MainQueue& queue_;
};

}  // namespace quillmark
