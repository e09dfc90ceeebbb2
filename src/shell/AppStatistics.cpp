#include "shell/AppStatistics.h"

#include "base/Log.h"
#include "base/Uuid.h"

namespace quillmark {
namespace {

constexpr double secondsFrom1970To2001 = 978307200;

double secondsSince2001(Date date) {
  return std::chrono::duration<double>(date.time_since_epoch()).count() - secondsFrom1970To2001;
}

std::set<std::string> namesFromJson(const JsonObject& object, const char* key) {
  const auto list = object.requiredArray<std::string>(key, decodeJson<std::string>);
  return {list.begin(), list.end()};
}

}  // namespace

Json toJson(const AppStatisticsData& data) {
  Json json = {{"commandUsage", data.commandUsage},   {"providerUsage", data.providerUsage},
               {"totalRewrites", data.totalRewrites}, {"characterCount", data.characterCount},
               {"popClipNames", data.popClipNames},   {"installationId", data.installationId}};
  if (data.lastUsedDate) {
    json["lastUsedDate"] = *data.lastUsedDate;
  }
  if (data.lastSyncDate) {
    json["lastSyncDate"] = *data.lastSyncDate;
  }
  return json;
}

AppStatisticsData appStatisticsFromJson(const Json& json) {
  const JsonObject object(json);
  AppStatisticsData data;
  const Json* usage = object.find("commandUsage");
  if (usage == nullptr || !usage->is_object()) {
    throw DecodingError("commandUsage", "is not an object");
  }
  for (const auto& [name, count] : usage->items()) {
    data.commandUsage[name] = decodeJson<std::int64_t>(count, "commandUsage." + name);
  }
  data.providerUsage = namesFromJson(object, "providerUsage");
  data.totalRewrites = object.required<std::int64_t>("totalRewrites");
  data.characterCount = object.required<std::int64_t>("characterCount");
  data.popClipNames = namesFromJson(object, "popClipNames");
  data.lastUsedDate = object.optional<double>("lastUsedDate");
  data.lastSyncDate = object.optional<double>("lastSyncDate");
  data.installationId = object.required<std::string>("installationId");
  return data;
}

StatisticsResponse statisticsResponseFromJson(const Json& json) {
  const JsonObject object(json);
  return {object.required<bool>("success"), object.optional<std::string>("message")};
}

AppStatistics::AppStatistics(UserDefaults& defaults, MainQueue& queue, const APIClient& client,
                             const OperatingSystem& system)
    : defaults_(defaults),
      queue_(queue),
      client_(client),
      osVersion_(system.versionString()),
      stored_(defaults, storageKey) {}

void AppStatistics::recordCommand(const std::string& name) {
  const AppStatisticsData data = edit([&](AppStatisticsData& counts) {
    ++counts.commandUsage[name];
    ++counts.totalRewrites;
    counts.lastUsedDate = secondsSince2001(queue_.now());
  });
  if (isDue(data)) {
    syncTimer_.cancel();
    syncTimer_ = queue_.after(asyncTimeout, lifetime_.guard([this] { syncStatistics(); }));
  }
}

void AppStatistics::recordProvider(const std::string& name) {
  edit([&name](AppStatisticsData& counts) { counts.providerUsage.insert(name); });
}

void AppStatistics::recordPopClipInstall(const std::string& name) {
  edit([&name](AppStatisticsData& counts) { counts.popClipNames.insert(name); });
}

bool AppStatistics::shouldSync() { return isDue(read()); }

bool AppStatistics::isDue(const AppStatisticsData& data) const {
  return !data.lastSyncDate ||
         secondsSince2001(queue_.now()) - *data.lastSyncDate > std::chrono::duration<double>(syncInterval).count();
}

void AppStatistics::syncStatistics() {
  const Json statistics = toJson(read());
  log("Syncing statistics: " + toText(statistics));
  client_.post<StatisticsResponse>(
      syncURL, {{"statistics", statistics}, {"osVersion", osVersion_}}, "StatisticsResponse",
      statisticsResponseFromJson, lifetime_.guard([this](const Expected<StatisticsResponse, TransportError>& response) {
        if (!response) {
          log("Failed to sync statistics: " + response.error().description);
        } else if (response->success) {
          edit([this](AppStatisticsData& counts) { counts.lastSyncDate = secondsSince2001(queue_.now()); });
        }
      }));
}

AppStatisticsData AppStatistics::read() {
  const auto value = defaults_.value(storageKey);
  const Data* const stored = value ? std::get_if<Data>(&*value) : nullptr;
  if (value && (stored == nullptr || !stored->bytes.empty())) {
    try {
      if (stored == nullptr) {
        throw DecodingError({}, "is no data");
      }
      return appStatisticsFromJson(parseJson(stored->bytes));
    } catch (const DecodingError& error) {
      isKept_ = stored_.setAside(error.what());
    }
  }
  AppStatisticsData fresh;
  fresh.installationId = Uuid::random().toString();
  return fresh;
}

AppStatisticsData AppStatistics::edit(const std::function<void(AppStatisticsData&)>& change) {
  AppStatisticsData data;
  // Part of a run, which must not wait for the disk. A count that can't be stored is lost.
  (void)defaults_.transaction(
      [&] {
        isKept_ = true;
        data = read();
        change(data);
        return isKept_ && defaults_.set(storageKey, Data{toText(toJson(data))});
      },
      Durability::endOfProcess);
  return data;
}

}  // namespace quillmark
