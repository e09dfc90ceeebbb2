#pragma once

#include <optional>
#include <string>

#include "base/Json.h"
#include "base/Uuid.h"
#include "providers/ProviderType.h"

namespace quillmark {

/// One configured backend, as stored.
struct ProviderConfig {
  Uuid id;
  std::string slug;
  ProviderType providerType{};
  std::string name;
  std::string apiKey;
  std::string organization;
  std::string baseURL;
  std::string defaultModel;
  bool enabled = true;
  bool streamingEnabled = true;

  /// A new configuration; absent values come from the type, and the slug of a type without one from the name.
  struct Inputs {
    Uuid id = Uuid::random();
    ProviderType providerType{};
    std::string name;
    std::string apiKey;
    std::optional<std::string> baseURL;
    std::optional<std::string> defaultModel;
    bool enabled = true;
    bool streamingEnabled = true;
    std::optional<std::string> slug;
  };
  static ProviderConfig make(Inputs inputs);

  friend bool operator==(const ProviderConfig&, const ProviderConfig&) = default;
};

/// Leaves out what holds its default; an `id` that equals Uuid::processDefault() is left out too.
Json toJson(const ProviderConfig& config);
/// Throws DecodingError. Only `providerType` is required.
ProviderConfig providerConfigFromJson(const Json& json, const std::string& path = {});

}  // namespace quillmark
