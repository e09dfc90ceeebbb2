#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/Lifetime.h"
#include "base/Signal.h"
#include "commands/Command.h"
#include "commands/CommandTemplate.h"
#include "platform/MainQueue.h"
#include "platform/StoredList.h"
#include "platform/UserDefaults.h"
#include "providers/AppConfig.h"
#include "providers/HttpTransport.h"

namespace quillmark {

/// The hosted service's catalogue of ready-made commands: the stored copy of it, or the built-in commands while there
/// is none. Only the constructor fetches the catalogue, at most once a day. Main thread only.
class TemplateStore {
  StoredList<Command> list_;

 public:
  static constexpr const char* userDefaultsKey = keys::cachedTemplates.name;
  static constexpr double weekInSeconds = 86400.0;  ///< how long a copy is valid: a day, despite the name

  /// Requests the catalogue if the copy is a day old, and does not wait for the answer. A copy that does not decode is
  /// set aside and counts as none.
  TemplateStore(UserDefaults& defaults, HttpTransport& transport, const AppConfig& appConfig, const MainQueue& queue);

  const Observable<std::vector<Command>>& templates{list_.records()};
  Setting<double> lastFetchTimestamp;  ///< seconds since 1970-01-01 00:00:00 UTC; 0: never
  Setting<std::int64_t> cachedTemplatesCount;

  /// The templates with the query in their name or prompt, ignoring case; all for an empty query.
  std::vector<Command> filteredTemplates(const std::string& query) const;

 private:
  void fetch(HttpTransport& transport, const AppConfig& appConfig);
  void take(const Expected<std::vector<CommandTemplate>, TransportError>& answer);
  /// Seconds since 1970.
  double now() const;

  const MainQueue& queue_;
  Lifetime lifetime_;
};

}  // namespace quillmark
