#pragma once

#include <optional>
#include <set>
#include <string>
#include <vector>

#include "base/Signal.h"
#include "platform/StoredRecords.h"
#include "platform/UserDefaults.h"
#include "providers/ProviderConfig.h"

namespace quillmark {

/// The configured backends and which one a command uses. Main thread only.
class ProviderStore {
 public:
  static constexpr const char* userDefaultsKey = keys::providerStore.name;

  explicit ProviderStore(UserDefaults& defaults);

  Observable<std::vector<ProviderConfig>> configs;   ///< in display order; empty before load()
  Setting<std::string> defaultProvider;              ///< UUID of the configuration used when a command names none
  Setting<std::string> openAIApiKey;                 ///< of an old set-up with one provider; moved by resetConfigs()
  const std::vector<ProviderConfig> defaultConfigs;  ///< what a new user starts with: no keys, nothing enabled

  /// Reads the stored list. Without one that decodes and has an entry it starts over with the default configurations;
  /// a list that does not decode is set aside first. From then on the store follows what other processes store.
  void load();

  /// With an id the configuration of this id, with no fall back; without one defaultConfig().
  std::optional<ProviderConfig> config(const std::optional<Uuid>& id) const;
  std::optional<ProviderConfig> defaultConfig() const;

  /// Appends a configuration, with a number behind its name unless it is the first of its type. Changes nothing when
  /// the list can't be stored.
  void addConfig(ProviderConfig config);
  /// Replaces the configuration with the same id, if there is one. Changes nothing when the list can't be stored.
  void updateConfig(const ProviderConfig& config);
  /// The default provider may be among them: there is none then, until another one is chosen.
  void deleteConfig(const std::set<Uuid>& ids);
  /// Appends those default configurations whose slug no configuration has.
  void addMissingConfigs();

  /// Replaces the whole list by the default configurations, takes over an old key, enables what has a key
  /// and the hosted provider, and makes the first enabled one the default.
  void resetConfigs();

 private:
  ProviderConfig* firstOfType(std::vector<ProviderConfig>& list, ProviderType type) const;

  void adoptStored();

  UserDefaults& defaults_;
  StoredRecords<ProviderConfig> stored_;
  Connection changes_;
};

}  // namespace quillmark
