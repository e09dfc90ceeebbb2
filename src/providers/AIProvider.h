#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "providers/ProviderConfig.h"
#include "providers/ProviderModel.h"

namespace quillmark {

/// A live backend, created from a configuration for each use. Operations are called on the main thread, return at once,
/// throw nothing and answer through their callbacks, which may run after the object is gone.
class AIProvider {
 public:
  /// The answer; absent when the request failed (the user has then been told) or held no answer.
  using ChatCompletion = std::function<void(std::optional<std::string>)>;

  AIProvider(const AIProvider&) = delete;
  AIProvider& operator=(const AIProvider&) = delete;
  virtual ~AIProvider() = default;

  const ProviderConfig& config() const { return config_; }
  const Uuid& id() const { return config_.id; }
  ProviderType providerType() const { return providerType_; }
  const std::string& name() const { return config_.name; }
  const std::string& apiKey() const { return config_.apiKey; }
  const std::string& baseURL() const { return baseURL_; }
  void setBaseURL(std::string url) { baseURL_ = std::move(url); }
  const std::string& defaultModel() const { return defaultModel_; }
  void setDefaultModel(std::string model) { defaultModel_ = std::move(model); }

  /// One request, one answer. An absent model means defaultModel(). Calls the completion once, on any thread.
  virtual void chat(const std::string& text, const std::string& systemPrompt, const std::optional<std::string>& model,
                    ChatCompletion completion) = 0;

  /// One request, the answer in pieces, all on the main thread. `onComplete` comes once and last, with the whole text,
  /// absent when there was none.
  virtual void streamChat(const std::string& text, const std::string& systemPrompt,
                          const std::optional<std::string>& model, std::function<void(const std::string&)> onChunk,
                          ChatCompletion onComplete) = 0;

  /// The backend's models, on the main thread; absent when the request failed.
  virtual void listModels(std::function<void(std::optional<std::vector<ProviderModel>>)> completion) = 0;

  /// Whether a short chat with the configured key gets any answer; calls back on the thread on which chat() does.
  void validateApiKey(std::function<void(bool)> completion);

  /// Whether this class can stream at all.
  virtual bool hasStreamingCapability() const { return true; }
  /// Whether callers should use streamChat().
  bool usesStreaming() const { return hasStreamingCapability() && config_.streamingEnabled; }

 protected:
  AIProvider(ProviderConfig config, ProviderType type)
      : config_(std::move(config)),
        providerType_(type),
        baseURL_(config_.baseURL),
        defaultModel_(config_.defaultModel) {}

  std::string modelOrDefault(const std::optional<std::string>& model) const { return model.value_or(defaultModel_); }

 private:
  ProviderConfig config_;
  ProviderType providerType_;
  std::string baseURL_;
  std::string defaultModel_;
};

}  // namespace quillmark
