#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>
#include <utility>

namespace quillmark {

/// Specialised beside each enumeration that is stored as a string:
/// `static constexpr std::array<std::pair<Enum, std::string_view>, N> table`, in the order of all cases.
template <class Enum>
struct RawValues;

template <class Enum>
constexpr std::string_view rawValue(Enum value) {
  for (const auto& [candidate, raw] : RawValues<Enum>::table) {
    if (candidate == value) {
      return raw;
    }
  }
  return {};
}

/// Nothing for a string that names no case; the comparison is exact.
template <class Enum>
constexpr std::optional<Enum> fromRawValue(std::string_view raw) {
  for (const auto& [candidate, text] : RawValues<Enum>::table) {
    if (text == raw) {
      return candidate;
    }
  }
  return std::nullopt;
}

template <class Enum>
constexpr auto allCases() {
  std::array<Enum, RawValues<Enum>::table.size()> cases{};
  for (std::size_t i = 0; i < cases.size(); ++i) {
    cases[i] = RawValues<Enum>::table[i].first;
  }
  return cases;
}

}  // namespace quillmark
