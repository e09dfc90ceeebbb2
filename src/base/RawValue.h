#pragma once

#include <optional>
#include <string_view>

#include "base/EnumTable.h"

namespace quillmark {

/// Specialised beside each enumeration that is stored as a string: `static const EnumTable<Row> table`, whose rows have
/// that string as `raw`, alone (RawValueRow) or beside other columns. Settings need the table to be constexpr.
template <class Enum>
struct RawValues;

template <class Enum>
struct RawValueRow {
  Enum key;
  std::string_view raw;
};

template <class Enum>
constexpr std::string_view rawValue(Enum value) {
  return RawValues<Enum>::table[value].raw;
}

/// Nothing for a string that names no case; the comparison is exact.
template <class Enum>
constexpr std::optional<Enum> fromRawValue(std::string_view raw) {
  for (const auto& row : RawValues<Enum>::table) {
    if (row.raw == raw) {
      return row.key;
    }
  }
  return std::nullopt;
}

}  // namespace quillmark
