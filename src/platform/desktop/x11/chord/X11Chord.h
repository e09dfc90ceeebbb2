#pragma once

#include <bitset>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "platform/KeyInjector.h"

/// Which keys of an X keyboard to press for a copy or paste combination. Pure functions without a server.
namespace quillmark::chord {

/// X key codes are 8 to 255; 0 means a key that the keyboard does not have.
using XKey = std::uint8_t;
using XKeys = std::bitset<256>;

/// The keys that copy and paste in a window.
enum class Dialect {
  control,       ///< Control and the letter, as in nearly every program
  controlShift,  ///< terminals, where Control and a letter go to the program running inside
  none,          ///< terminals without clipboard keys unless the user configures some
};

/// By the two names of the window's WM_CLASS, ignoring case.
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
  unsigned group = 0;        ///< the effective one
  unsigned lockedGroup = 0;  ///< without the effect of held keys
  XKeys pressed;
};

struct Step {
  enum class Kind { press, release, lockGroup };
  Kind kind{};
  std::uint8_t value = 0;  ///< a key or a group
  friend bool operator==(const Step&, const Step&) = default;
};

/// Empty when the keyboard can't produce the combination or the window has none. Without a Latin letter in any group
/// Control+Insert copies and Shift+Insert pastes. The combination's own modifiers are pressed before others that the
/// user holds are released, so that no program sees a modifier tapped alone; released keys stay released.
std::vector<Step> steps(std::span<const KeyboardEvent> events, const Keyboard& keyboard, const Moment& moment,
                        Dialect dialect);

}  // namespace quillmark::chord
