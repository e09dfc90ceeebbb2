#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "platform/HotKeys.h"
#include "platform/desktop/x11/X11Keyboard.h"

namespace quillmark {

/// Hot keys by passive grabs. A hot key is armed when its key is pressed and fires when that key is released, whatever
/// the modifiers do meanwhile.
///
/// A run started by a hot key simulates keys while the user may still hold its modifiers, and releases them first. From
/// then on the server counts them as released, and a second tap of the key would reach the application in front as an
/// ordinary letter. So from the press on, for as long as the user physically holds the modifiers, the key is also
/// grabbed with every subset of them. What is physically held is known from the keyboard's raw events, which are
/// selected only during that time.
class X11HotKeys : public HotKeys {
 public:
  X11HotKeys(X11Connection& connection, X11Keyboard& keyboard);
  ~X11HotKeys() override;

  void registerHotKey(const std::string& name, const KeyCombination& combination) override;
  void unregisterHotKey(const std::string& name) override;
  bool isAvailable(const KeyCombination& combination) override;
  std::string keyLabel(int carbonKeyCode) const override;
  std::optional<int> keyCodeOf(std::uint32_t nativeScanCode) const override;

 private:
  /// A key with modifiers, lock keys left out.
  struct Chord {
    std::uint8_t key = 0;
    std::uint16_t modifiers = 0;
    friend auto operator<=>(const Chord&, const Chord&) = default;
  };
  struct HotKey {
    KeyCombination combination;
    std::optional<Chord> chord;  ///< absent while refused
  };
  struct Guard {
    Chord chord;
    std::set<Chord> grabs;
  };

  std::optional<Chord> chordOf(const KeyCombination& combination) const;
  bool isInUse(const Chord& chord) const;
  void take(const std::string& name);
  void drop(HotKey& hotKey);
  std::vector<std::uint16_t> lockVariants() const;
  bool grab(const Chord& chord);
  void ungrab(const Chord& chord);
  void keyboardChanged();

  void pressed(const xcb_key_press_event_t& event);
  void keyReleased(std::uint8_t key);
  void rawKey(const xcb_generic_event_t& event);

  void watchKeyboard(bool watch);
  std::uint16_t heldModifiers() const;
  void updateGuard(const std::optional<Chord>& chord);
  void stopIfNothingIsDown();

  X11Connection& connection_;
  X11Keyboard& keyboard_;
  X11Keyboard::Modifiers modifiers_;
  std::map<std::string, HotKey> hotKeys_;
  std::map<std::uint8_t, Chord> armed_;  ///< by key
  std::optional<Guard> guard_;
  chord::XKeys heldKeys_;  ///< modifier keys that the user physically holds, known while watching
  bool watching_ = false;
  std::uint8_t inputOpcode_ = 0;
  std::set<std::uint16_t> testDevices_;  ///< sources of simulated keys
  Connection press_, release_, raw_, changed_;
};

}  // namespace quillmark
