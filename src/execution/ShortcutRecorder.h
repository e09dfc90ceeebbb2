#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "base/Signal.h"
#include "execution/GlobalShortcuts.h"
#include "platform/AlertHandler.h"
#include "platform/HotKeys.h"

namespace quillmark {

/// The field in which a user records the key combination of one shortcut. While it waits for keys no shortcut fires.
/// Main thread only.
class ShortcutRecorder {
 public:
  struct Collaborators {
    GlobalShortcuts& shortcuts;
    HotKeys& hotKeys;
    AlertHandler& alertHandler;
    /// The title of this program's menu item that a combination chooses, if there is one.
    std::function<std::optional<std::string>(const KeyCombination&)> menuItemUsing;
    /// What people call a shortcut.
    std::function<std::string(const std::string& name)> titleOf;
  };

  ShortcutRecorder(Collaborators collaborators, std::string name);

  /// What the field shows: the combination, or an invitation to record one.
  std::string text() const;
  bool isRecording() const { return pause_.has_value(); }
  bool hasShortcut() const { return collaborators_.shortcuts.getShortcut(name_).has_value(); }

  /// text() may have changed.
  Signal<> changed;

  /// Waits for keys.
  void begin();
  /// Stops waiting; the shortcut stays as it was.
  void end();
  void clear();
  /// A key other than a modifier was pressed, with this set of modifiers; `nativeScanCode` is what the toolkit's event
  /// calls it. Escape ends, Backspace and Delete clear, each without modifiers. Any other combination is stored, or
  /// refused with an alert; recording is over then. Waits on after a key that has no position on such a keyboard.
  void keyPressed(std::uint32_t nativeScanCode, int carbonModifiers);

  /// "Ctrl+Alt+G", by what is on the keys of the present keyboard; the modifiers in the interface language.
  static std::string describe(const KeyCombination& combination, const HotKeys& hotKeys);

 private:
  std::optional<AlertKind> refusalOf(const KeyCombination& combination) const;

  Collaborators collaborators_;
  std::string name_;
  std::optional<GlobalShortcuts::Pause> pause_;
  Connection changes_;
};

}  // namespace quillmark
