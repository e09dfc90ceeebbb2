#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace quillmark {

/// Bytes of a stored value, distinct from a string.
struct Data {
  std::string bytes;
  friend bool operator==(const Data&, const Data&) = default;
};

using DefaultsValue = std::variant<bool, std::int64_t, double, std::string, Data, std::vector<std::string>>;

}  // namespace quillmark
