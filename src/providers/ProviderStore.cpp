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

ProviderConfig* firstOfType(std::vector<ProviderConfig>& list, ProviderType type) {
  const auto found = std::ranges::find(list, type, &ProviderConfig::providerType);
  return found == list.end() ? nullptr : &*found;
}

bool addMissing(std::vector<ProviderConfig>& list, const std::vector<ProviderConfig>& defaultConfigs) {
  const std::size_t before = list.size();
  for (ProviderConfig config : defaultConfigs) {
    if (std::ranges::find(list, config.slug, &ProviderConfig::slug) != list.end()) {
      continue;
    }
    log(config.slug + " config added");
    if (std::ranges::find(list, config.id, &ProviderConfig::id) != list.end()) {
      config.id = Uuid::random();  // the same entry still exists under a changed slug
    }
    list.push_back(std::move(config));
  }
  return list.size() > before;
}

}  // namespace

ProviderStore::ProviderStore(UserDefaults& defaults)
    : list_(defaults, keys::providerStore,
            {.read = providerConfigFromJson,
             .initial =
                 [this] {
                   std::vector<ProviderConfig> list = defaultConfigs;
                   firstOfType(list, ProviderType::quillMark)->enabled = true;
                   return list;
                 },
             .emptyIsNone = true}),
      defaultProvider(defaults, keys::defaultProvider),
      openAIApiKey(defaults, keys::oldApiKey),
      defaultConfigs(makeDefaultConfigs()) {}

void ProviderStore::load() {
  if (list_.load().found == LoadedList::Found::list) {
    log("Load provider " + std::to_string(configs->size()));
  } else {
    (void)resetConfigs();  // a refusal doesn't matter: the default configurations apply while nothing is stored
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

bool ProviderStore::addConfig(ProviderConfig config) {
  return list_.edit([&config](auto& list) {
    const auto count = std::ranges::count(list, config.providerType, &ProviderConfig::providerType);
    log("found: " + std::to_string(count));
    if (count > 0) {
      config.name += " " + std::to_string(count + 1);
    }
    list.push_back(std::move(config));
  });
}

bool ProviderStore::updateConfig(const ProviderConfig& config) {
  return changeConfig(config.id, [&config](auto& present) { present = config; });
}

bool ProviderStore::changeConfig(const Uuid& id, const std::function<void(ProviderConfig&)>& change) {
  return list_.edit([&](auto& list) {
    if (const auto present = std::ranges::find(list, id, &ProviderConfig::id); present != list.end()) {
      change(*present);
    }
  });
}

bool ProviderStore::deleteConfig(const std::set<Uuid>& ids) {
  return list_.edit(
      [&ids](auto& list) { std::erase_if(list, [&ids](const auto& config) { return ids.contains(config.id); }); });
}

bool ProviderStore::addMissingConfigs() {
  std::vector<ProviderConfig> trial = configs;
  return !addMissing(trial, defaultConfigs) || list_.edit([this](auto& list) { addMissing(list, defaultConfigs); });
}

bool ProviderStore::resetConfigs() {
  return list_.edit([this](auto& list) {
    list = defaultConfigs;
    log("Init provider configs " + std::to_string(list.size()));
    if (const std::string oldKey = openAIApiKey.get(); !oldKey.empty()) {
      if (ProviderConfig* openAI = firstOfType(list, ProviderType::openAI)) {
        log("OpenAI key migrated");
        openAI->apiKey = oldKey;
        openAIApiKey.set("");
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
    const auto first = std::ranges::find(list, true, &ProviderConfig::enabled);
    defaultProvider.set(first == list.end() ? "" : first->id.toString());
    log("Setting default provider to " + (first == list.end() ? "undefined" : first->name));
  });
}

}  // namespace quillmark
