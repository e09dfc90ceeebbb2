#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "base/Json.h"
#include "base/Uuid.h"
#include "providers/ProviderType.h"

namespace quillmark {

/// One model of a backend, as stored.
struct ProviderModel {
  Uuid id;
  std::string identifier;  ///< its name in the vendor's API
  ProviderType providerType{};
  std::string name;  ///< the label shown to the user
  std::optional<bool> enabled;
  std::optional<std::int64_t> contextLength;  ///< in tokens

  friend bool operator==(const ProviderModel&, const ProviderModel&) = default;
};

Json toJson(const ProviderModel& model);
/// Throws DecodingError. `identifier`, `providerType` and `name` are required.
ProviderModel providerModelFromJson(const Json& json, const std::string& path = {});

}  // namespace quillmark
