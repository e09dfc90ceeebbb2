#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace quillmark {

/// A universally unique identifier (RFC 4122).
class Uuid {
 public:
  /// The nil UUID; only useful as a value to assign to.
  Uuid() = default;

  static Uuid random();

  /// Reads five groups of hexadecimal digits in either case; nothing for any other text.
  static std::optional<Uuid> parse(std::string_view text);

  /// One random UUID, the same until the process ends. It replaces a missing `id` of a stored record.
  static const Uuid& processDefault();

  /// Upper-case hexadecimal in five groups, the stored form.
  std::string toString() const;

  friend bool operator==(const Uuid&, const Uuid&) = default;
  friend auto operator<=>(const Uuid&, const Uuid&) = default;

 private:
  std::array<std::uint8_t, 16> bytes_{};
  friend struct std::hash<Uuid>;
};

}  // namespace quillmark

template <>
struct std::hash<quillmark::Uuid> {
  std::size_t operator()(const quillmark::Uuid& uuid) const noexcept;
};
