#include "providers/ModelStore.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <set>
#include <utility>

#include "base/Log.h"

namespace quillmark {
namespace {

/// Parts of the identifiers of models for audio, images and embeddings.
constexpr const char* modelBlackList[] = {"whisper", "tts-", "dall-e", "audio", "embedding"};

struct KnownModel {
  ProviderType type;
  const char* identifier;
};

constexpr KnownModel knownModels[] = {
    {ProviderType::quillMark, "gpt-4o-mini"},
    {ProviderType::quillMark, "meta-llama/llama-3.1-8b-instruct"},
    {ProviderType::openAI, "gpt-4o"},
    {ProviderType::openAI, "gpt-4o-mini"},
    {ProviderType::openAI, "gpt-4"},
    {ProviderType::openAI, "gpt-3.5-turbo"},
    {ProviderType::groq, "gemma2-9b-it"},
    {ProviderType::groq, "llama-3.3-70b-versatile"},
    {ProviderType::groq, "llama-3.1-8b-instant"},
    {ProviderType::groq, "llama-guard-3-8b"},
    {ProviderType::groq, "llama3-70b-8192"},
    {ProviderType::groq, "llama3-8b-8192"},
    {ProviderType::groq, "mixtral-8x7b-32768"},
    {ProviderType::groq, "llama-3.2-1b-preview"},
    {ProviderType::groq, "llama-3.2-3b-preview"},
    {ProviderType::openRouter, "openai/gpt-4o-mini"},
    {ProviderType::openRouter, "openai/gpt-4o"},
    {ProviderType::openRouter, "openai/chatgpt-4o-latest"},
    {ProviderType::openRouter, "meta-llama/llama-3.3-70b-instruct"},
    {ProviderType::openRouter, "meta-llama/llama-3.2-3b-instruct"},
    {ProviderType::openRouter, "meta-llama/llama-3.2-1b-instruct"},
    {ProviderType::openRouter, "meta-llama/llama-3.1-8b-instruct"},
    {ProviderType::openRouter, "mistralai/ministral-8b"},
    {ProviderType::openRouter, "deepseek/deepseek-chat"},
    {ProviderType::anthropic, "claude-3-5-haiku-latest"},
    {ProviderType::anthropic, "claude-3-5-sonnet-latest"},
    {ProviderType::anthropic, "claude-3-haiku-20240307"},
    {ProviderType::anthropic, "claude-3-opus-20240229"},
    {ProviderType::anthropic, "claude-3-sonnet-20240229"},
    {ProviderType::togetherAI, "meta-llama/Llama-3.2-3B-Instruct-Turbo"},
    {ProviderType::togetherAI, "Qwen/Qwen2-72B-Instruct"},
    {ProviderType::togetherAI, "scb10x/scb10x-llama3-typhoon-v1-5-8b-instruct"},
};

using Key = std::pair<ProviderType, std::string>;

Key keyOf(const ProviderModel& model) { return {model.providerType, model.identifier}; }

bool isBlackListed(const std::string& identifier) {
  return std::ranges::any_of(modelBlackList,
                             [&](const char* part) { return identifier.find(part) != std::string::npos; });
}

ProviderModel plainModel(ProviderType type, const std::string& identifier) {
  return {Uuid::random(), identifier, type, identifier, std::nullopt, std::nullopt};
}

}  // namespace

ModelStore::ModelStore(UserDefaults& defaults) : list_(defaults, keys::models, {.read = providerModelFromJson}) {
  list_.load();
}

std::vector<ProviderModel> ModelStore::modelsFor(ProviderType type) const {
  std::vector<ProviderModel> result;
  std::ranges::copy_if(models.get(), std::back_inserter(result),
                       [type](const auto& model) { return model.providerType == type; });
  return result;
}

bool ModelStore::updateModels(const std::vector<ProviderModel>& list) { return merge(list, Durability::lossOfPower); }

bool ModelStore::merge(const std::vector<ProviderModel>& list, Durability durability) {
  if (list.empty()) {
    return true;
  }
  log("update models count: " + std::to_string(list.size()) + " current count: " + std::to_string(models->size()));
  return list_.edit(
      [&list](auto& all) {
        std::map<Key, std::size_t> places;
        for (std::size_t i = 0; i < all.size(); ++i) {
          places.emplace(keyOf(all[i]), i);
        }
        for (const auto& model : list) {
          if (isBlackListed(model.identifier)) {
            continue;
          }
          const auto [place, isNew] = places.emplace(keyOf(model), all.size());
          if (isNew) {
            all.push_back(model);
          } else {
            all[place->second] = model;
          }
        }
        std::ranges::stable_sort(all, {}, &ProviderModel::name);
      },
      durability);
}

bool ModelStore::cleanUpModels(ProviderType type) {
  log("Cleaning up models...");
  return list_.edit(
      [type](auto& all) { std::erase_if(all, [type](const auto& model) { return model.providerType == type; }); });
}

void ModelStore::initializeDefaultModels() {
  log("Initializing default models...");
  std::vector<ProviderModel> list;
  for (const ProviderType type : allCases<ProviderType>()) {
    if (const std::string identifier = info(type).defaultModel; !identifier.empty()) {
      list.push_back(plainModel(type, identifier));
    }
  }
  std::set<Key> stored;
  std::ranges::transform(models.get(), std::inserter(stored, stored.end()), keyOf);
  for (const auto& [type, identifier] : knownModels) {
    if (!stored.contains({type, identifier}) && info(type).defaultModel != std::string(identifier)) {
      list.push_back(plainModel(type, identifier));
    }
  }
  // The next start would make the same list again: no need to wait for the disk.
  (void)merge(list, Durability::endOfProcess);
}

}  // namespace quillmark
