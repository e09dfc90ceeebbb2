#pragma once

#include <array>
#include <cstdint>
#include <optional>

/// Stored key combinations name keys by position, as virtual key codes of an ANSI keyboard plus the additional keys of
/// ISO and JIS keyboards. The X server's key code for a position is the kernel's plus 8.
namespace quillmark::keys {

namespace detail {

struct Position {
  std::uint8_t virtualKey;
  std::uint8_t kernelKey;  // KEY_* of linux/input-event-codes.h
};

// clang-format off
inline constexpr Position positions[] = {
    // digits
    {0x12, 2}, {0x13, 3}, {0x14, 4}, {0x15, 5}, {0x17, 6}, {0x16, 7}, {0x1A, 8}, {0x1C, 9}, {0x19, 10}, {0x1D, 11},
    {0x1B, 12} /* - */, {0x18, 13} /* = */,
    // Q to ]
    {0x0C, 16}, {0x0D, 17}, {0x0E, 18}, {0x0F, 19}, {0x11, 20}, {0x10, 21}, {0x20, 22}, {0x22, 23}, {0x1F, 24},
    {0x23, 25}, {0x21, 26}, {0x1E, 27},
    // A to ', `, backslash
    {0x00, 30}, {0x01, 31}, {0x02, 32}, {0x03, 33}, {0x05, 34}, {0x04, 35}, {0x26, 36}, {0x28, 37}, {0x25, 38},
    {0x29, 39}, {0x27, 40}, {0x32, 41}, {0x2A, 43},
    // Z to /
    {0x06, 44}, {0x07, 45}, {0x08, 46}, {0x09, 47}, {0x0B, 48}, {0x2D, 49}, {0x2E, 50}, {0x2B, 51}, {0x2F, 52},
    {0x2C, 53},
    // escape, backspace, tab, return, space
    {0x35, 1}, {0x33, 14}, {0x30, 15}, {0x24, 28}, {0x31, 57},
    // modifiers, left and right: control, shift, option, command; caps lock
    {0x3B, 29}, {0x3E, 97}, {0x38, 42}, {0x3C, 54}, {0x3A, 56}, {0x3D, 100}, {0x37, 125}, {0x36, 126}, {0x39, 58},
    // F1 to F20
    {0x7A, 59}, {0x78, 60}, {0x63, 61}, {0x76, 62}, {0x60, 63}, {0x61, 64}, {0x62, 65}, {0x64, 66}, {0x65, 67},
    {0x6D, 68}, {0x67, 87}, {0x6F, 88}, {0x69, 183}, {0x6B, 184}, {0x71, 185}, {0x6A, 186}, {0x40, 187}, {0x4F, 188},
    {0x50, 189}, {0x5A, 190},
    // keypad: 0 to 9, . * + / Enter - =, Clear where others have Num Lock
    {0x52, 82}, {0x53, 79}, {0x54, 80}, {0x55, 81}, {0x56, 75}, {0x57, 76}, {0x58, 77}, {0x59, 71}, {0x5B, 72},
    {0x5C, 73}, {0x41, 83}, {0x43, 55}, {0x45, 78}, {0x4B, 98}, {0x4C, 96}, {0x4E, 74}, {0x51, 117}, {0x47, 69},
    // Help where others have Insert, Home, Page Up, Delete, End, Page Down, arrows left right down up, menu
    {0x72, 110}, {0x73, 102}, {0x74, 104}, {0x75, 111}, {0x77, 107}, {0x79, 109}, {0x7B, 105}, {0x7C, 106},
    {0x7D, 108}, {0x7E, 103}, {0x6E, 127},
    // volume up and down, mute
    {0x48, 115}, {0x49, 114}, {0x4A, 113},
    // ISO: the key beside the left shift. JIS: yen, underscore, keypad comma, the keys left and right of the space bar
    {0x0A, 86}, {0x5D, 124}, {0x5E, 89}, {0x5F, 121}, {0x66, 94}, {0x68, 92},
};
// clang-format on

inline constexpr std::uint8_t kernelToX = 8;

}  // namespace detail

/// The X key code of a virtual key code; nothing for a key that these keyboards don't have.
constexpr std::optional<std::uint8_t> xKeyCode(int virtualKeyCode) {
  for (const auto& position : detail::positions) {
    if (position.virtualKey == virtualKeyCode) {
      return static_cast<std::uint8_t>(position.kernelKey + detail::kernelToX);
    }
  }
  return std::nullopt;
}

/// The virtual key code of an X key code; nothing for a key without one.
constexpr std::optional<int> virtualKeyCode(unsigned xKeyCode) {
  for (const auto& position : detail::positions) {
    if (position.kernelKey + detail::kernelToX == static_cast<int>(xKeyCode)) {
      return position.virtualKey;
    }
  }
  return std::nullopt;
}

}  // namespace quillmark::keys
