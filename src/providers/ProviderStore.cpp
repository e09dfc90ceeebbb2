#include "providers/ProviderStore.h"

#include <algorithm>

#include "base/Log.h"

namespace quillmark {
namespace {

std::vector<ProviderConfig> makeDefaultConfigs() {
  std::vector<ProviderConfig> configs;
  for (const auto type : {ProviderType::quillMark, ProviderType::openAI, ProviderType::groq, ProviderType::anthropic,
                          ProviderType::mistral, ProviderType::openRouter, ProviderType::togetherAI, ProviderType::xAI,
                          ProviderType::ollama}) {
    ProviderConfig::Inputs inputs;
    inputs.providerType = type;
    inputs.name = info(type).displayName;
    inputs.enabled = false;
    configs.push_back(ProviderConfig::make(std::move(inputs)));
  }
  return configs;
}

void enable(ProviderConfig& config, bool enabled) {
  config.enabled = enabled;
  log("Set " + config.name + " to " + (enabled ? "true" : "false"));
}

}  // namespace

ProviderStore::ProviderStore(UserDefaults& defaults)
    : defaultProvider(defaults, keys::defaultProvider),
      openAIApiKey(defaults, keys::oldApiKey),
      defaultConfigs(makeDefaultConfigs()),
      defaults_(defaults),
      stored_(defaults, userDefaultsKey, providerConfigFromJson) {}

void ProviderStore::load() {
  // The command line may change the list while the desktop program runs.
  changes_ = defaults_.changed.connect([this](const std::string& key) {
    if (key == userDefaultsKey) {
      adoptStored();
    }
  });
  auto list = stored_.load().records.value_or(std::vector<ProviderConfig>());
  if (list.empty()) {
    resetConfigs();
    return;
  }
  log("Load provider " + std::to_string(list.size()));
  configs.set(std::move(list));
}

void ProviderStore::adoptStored() {
  auto list = stored_.load().records.value_or(std::vector<ProviderConfig>());
  if (!list.empty() && list != configs.get()) {
    configs.set(std::move(list));
  }
}

std::optional<ProviderConfig> ProviderStore::config(const std::optional<Uuid>& id) const {
  if (!id) {
    return defaultConfig();
  }
  const auto& list = configs.get();
  const auto found = std::find_if(list.begin(), list.end(), [&](const auto& config) { return config.id == *id; });
  return found == list.end() ? std::nullopt : std::optional(*found);
}

std::optional<ProviderConfig> ProviderStore::defaultConfig() const {
  if (const auto id = Uuid::parse(defaultProvider.get())) {
    return config(id);
  }
  const auto& list = configs.get();
  const auto found = std::find_if(list.begin(), list.end(),
                                  [](const auto& config) { return config.providerType == ProviderType::quillMark; });
  return found == list.end() ? std::nullopt : std::optional(*found);
}

void ProviderStore::addConfig(ProviderConfig config) {
  std::vector<ProviderConfig> list = configs.get();
  const auto count = std::ranges::count(list, config.providerType, &ProviderConfig::providerType);
  log("found: " + std::to_string(count));
  if (count > 0) {
    config.name += " " + std::to_string(count + 1);
  }
  list.push_back(std::move(config));
  if (stored_.store(list)) {
    configs.set(std::move(list));
  }
}

void ProviderStore::updateConfig(const ProviderConfig& config) {
  std::vector<ProviderConfig> list = configs.get();
  if (const auto present = std::ranges::find(list, config.id, &ProviderConfig::id); present != list.end()) {
    *present = config;
  }
  if (stored_.store(list)) {
    configs.set(std::move(list));
  }
}

void ProviderStore::deleteConfig(const std::set<Uuid>& ids) {
  configs.mutate([&](auto& list) { std::erase_if(list, [&](const auto& config) { return ids.contains(config.id); }); });
  stored_.store(configs.get());
}

void ProviderStore::addMissingConfigs() {
  std::vector<ProviderConfig> list = configs.get();
  const std::size_t before = list.size();
  for (ProviderConfig config : defaultConfigs) {
    if (std::ranges::find(list, config.slug, &ProviderConfig::slug) != list.end()) {
      continue;
    }
    log(config.slug + " config added");
    if (std::ranges::find(list, config.id, &ProviderConfig::id) != list.end()) {
      config.id = Uuid::random();  // the same entry, whose slug has been changed, is still there
    }
    list.push_back(std::move(config));
  }
  if (list.size() > before) {
    configs.set(std::move(list));
    stored_.store(configs.get());
  }
}

void ProviderStore::resetConfigs() {
  std::vector<ProviderConfig> list = defaultConfigs;
  log("Init provider configs " + std::to_string(list.size()));

  bool tookOldKey = false;
  if (const std::string oldKey = openAIApiKey.get(); !oldKey.empty()) {
    if (ProviderConfig* openAI = firstOfType(list, ProviderType::openAI)) {
      log("OpenAI key migrated");
      openAI->apiKey = oldKey;
      tookOldKey = true;
    }
  }
  for (auto& config : list) {
    if (config.providerType != ProviderType::quillMark) {
      enable(config, config.enabled || !config.apiKey.empty());
    }
  }
  if (ProviderConfig* hosted = firstOfType(list, ProviderType::quillMark)) {
    enable(*hosted, true);
  }
  configs.set(std::move(list));
  // The old key goes only once the list that holds it is stored.
  if (stored_.store(configs.get()) && tookOldKey) {
    openAIApiKey.set("");
  }

  const auto& all = configs.get();
  const auto first = std::find_if(all.begin(), all.end(), [](const auto& config) { return config.enabled; });
  defaultProvider.set(first == all.end() ? "" : first->id.toString());
  log("Setting default provider to " + (first == all.end() ? "undefined" : first->name));
}

ProviderConfig* ProviderStore::firstOfType(std::vector<ProviderConfig>& list, ProviderType type) const {
  const auto found =
      std::find_if(list.begin(), list.end(), [type](const auto& config) { return config.providerType == type; });
  return found == list.end() ? nullptr : &*found;
}

}  // namespace quillmark
