#pragma once

#include <bitset>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "platform/KeyInjector.h"

/// Which keys of an X keyboard to press for the events of a copy or paste combination. Pure; knows no server.
namespace quillmark::chord {

/// X key codes are 8 to 255; 0 stands for a key that the keyboard does not have.
using XKey = std::uint8_t;
using XKeys = std::bitset<256>;

/// What copies and pastes in a window.
enum class Dialect {
  control,       ///< Control and the letter, as in nearly every program
  controlShift,  ///< terminals in which Control and a letter is an order to the program within
  none,          ///< terminals that have no keys for the clipboard unless the user makes some
};

/// By the two names of the window's WM_CLASS, in any letter case.
Dialect dialectOf(std::string_view instanceName, std::string_view className);

struct Keyboard {
  /// The keys that carry these letters on their first level in one group (layout).
  struct Letters {
    XKey c = 0;
    XKey v = 0;
  };
  std::vector<Letters> groups;
  XKey insert = 0;
  XKey control = 0;
  XKey shift = 0;
  XKeys modifiers;  ///< every modifier key but those that lock
};

/// The keyboard at the moment of posting.
struct Moment {
  unsigned group = 0;        ///< in force
  unsigned lockedGroup = 0;  ///< without what held keys add to it
  XKeys pressed;
};

struct Step {
  enum class Kind { press, release, lockGroup };
  Kind kind{};
  std::uint8_t value = 0;  ///< a key or a group
  friend bool operator==(const Step&, const Step&) = default;
};

/// Empty when the keyboard can't produce the combination or the window has none. Without a Latin letter in any group
/// Control+Insert copies and Shift+Insert pastes. The combination's own modifiers go down before others that
/// the user holds are lifted, so that no program takes a modifier for tapped alone; lifted keys stay lifted.
std::vector<Step> steps(std::span<const KeyboardEvent> events, const Keyboard& keyboard, const Moment& moment,
                        Dialect dialect);

}  // namespace quillmark::chord
