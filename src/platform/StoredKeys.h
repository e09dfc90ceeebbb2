#pragma once

#include <array>
#include <optional>
#include <string_view>

#include "platform/StoredKey.h"

namespace quillmark {

/// Every key that the program reads or writes; StoredKeys.def has a row for each. Each key has one owner, the only
/// class that names it (checked by `tools/lint/keys`). Records are JSON arrays in UTF-8.
namespace keys {

#define STORED_KEY(type, identifier, ...) inline constexpr StoredKey<type> identifier{__VA_ARGS__};
#include "platform/StoredKeys.def"
#undef STORED_KEY

inline constexpr std::array all{
#define STORED_KEY(type, identifier, ...) AnyStoredKey(identifier),
#include "platform/StoredKeys.def"
#undef STORED_KEY
};

/// Nothing for an unknown name. The keys of all shortcuts are one family.
constexpr std::optional<AnyStoredKey> find(std::string_view name) {
  for (const AnyStoredKey& key : all) {
    if (name == key.name || (key.isFamily() && name.starts_with(key.name))) {
      return key;
    }
  }
  return std::nullopt;
}

}  // namespace keys
}  // namespace quillmark
