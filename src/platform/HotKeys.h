#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "base/Signal.h"

namespace quillmark {

/// A stored key combination: a virtual key code of an ANSI keyboard and a set of modifiers.
struct KeyCombination {
  static constexpr int command = 1 << 8;
  static constexpr int shift = 1 << 9;
  static constexpr int option = 1 << 11;
  static constexpr int control = 1 << 12;

  int carbonKeyCode = 0;
  int carbonModifiers = 0;
  friend bool operator==(const KeyCombination&, const KeyCombination&) = default;
};

/// Key combinations that reach this program whichever application is in front. Main thread only.
class HotKeys {
 public:
  HotKeys() = default;
  HotKeys(const HotKeys&) = delete;
  HotKeys& operator=(const HotKeys&) = delete;
  virtual ~HotKeys() = default;

  /// A name has one combination; registering the name again replaces it.
  virtual void registerHotKey(const std::string& name, const KeyCombination& combination) = 0;
  virtual void unregisterHotKey(const std::string& name) = 0;

  /// Whether a combination that this program has not registered could be registered: a key produces it, and no other
  /// program holds it.
  virtual bool isAvailable(const KeyCombination& combination) = 0;
  /// The label of the key at this position of the current keyboard, such as "G", "Ö", "F5" or "Space".
  virtual std::string keyLabel(int carbonKeyCode) const = 0;
  /// The position of a key by the native scan code of the toolkit's event.
  virtual std::optional<int> keyCodeOf(std::uint32_t nativeScanCode) const = 0;

  /// The combination of this name was released. Auto-repeat of a held key does not count.
  Signal<const std::string&> released;
  /// The combination of this name belongs to another program, or no key of this keyboard can produce it. May come
  /// during registration or later, when the keyboard changes.
  Signal<const std::string&> refused;
};

}  // namespace quillmark
