#pragma once

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "base/Signal.h"
#include "platform/StoredList.h"
#include "platform/UserDefaults.h"
#include "providers/ProviderConfig.h"

namespace quillmark {

/// The configured backends and which one a command uses. Every change returns false when it could not be stored; the
/// configurations are then unchanged. Main thread only.
class ProviderStore {
  StoredList<ProviderConfig> list_;

 public:
  static constexpr const char* userDefaultsKey = keys::providerStore.name;

  explicit ProviderStore(UserDefaults& defaults);

  const Observable<std::vector<ProviderConfig>>& configs{list_.records()};  ///< in display order; empty before load()
  Setting<std::string> defaultProvider;  ///< UUID of the configuration used when a command names none
  Setting<std::string> openAIApiKey;     ///< key of an old set-up with a single provider; moved by resetConfigs()
  const std::vector<ProviderConfig> defaultConfigs;  ///< what a new user starts with: no keys, nothing enabled

  /// Reads the stored list. Without one that decodes and has an entry it starts over with the default configurations;
  /// a list that does not decode is set aside first.
  void load();

  /// With an id, the configuration of this id and no fallback; without one, defaultConfig().
  std::optional<ProviderConfig> config(const std::optional<Uuid>& id) const;
  std::optional<ProviderConfig> defaultConfig() const;

  /// Appends a configuration, with a number after its name unless it is the first of its type.
  [[nodiscard]] bool addConfig(ProviderConfig config);
  /// Replaces the configuration with the same id, if there is one.
  [[nodiscard]] bool updateConfig(const ProviderConfig& config);
  /// Changes some fields of the configuration with this id, if there is one, as stored now. What else the change stores
  /// belongs to the same transaction.
  [[nodiscard]] bool changeConfig(const Uuid& id, const std::function<void(ProviderConfig&)>& change);
  /// The default provider may be among them: then there is none until another one is chosen.
  [[nodiscard]] bool deleteConfig(const std::set<Uuid>& ids);
  /// Appends the default configurations whose slug is not in the list.
  [[nodiscard]] bool addMissingConfigs();

  /// Replaces the whole list by the default configurations, takes over an old key, enables what has a key
  /// and the hosted provider, and makes the first enabled one the default.
  [[nodiscard]] bool resetConfigs();
};

}  // namespace quillmark
