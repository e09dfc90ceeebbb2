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

/// The logic of the field that records the key combination of one shortcut. While it is recording no shortcut fires.
/// Main thread only.
class ShortcutRecorder {
 public:
  struct Collaborators {
    GlobalShortcuts& shortcuts;
    HotKeys& hotKeys;
    AlertHandler& alertHandler;
    /// The title of this program's menu item with this combination, if any.
    std::function<std::optional<std::string>(const KeyCombination&)> menuItemUsing;
    /// The title of a shortcut for the user.
    std::function<std::string(const std::string& name)> titleOf;
  };

  ShortcutRecorder(Collaborators collaborators, std::string name);

  /// What the field shows: the combination, or a prompt to record one.
  std::string text() const;
  bool isRecording() const { return pause_.has_value(); }
  bool hasShortcut() const { return collaborators_.shortcuts.getShortcut(name_).has_value(); }

  /// text() may have changed.
  Signal<> changed;

  /// Starts recording.
  void begin();
  /// Stops recording; the shortcut is unchanged.
  void end();
  void clear();
  /// A key other than a modifier was pressed, with this set of modifiers; `nativeScanCode` is the toolkit event's.
  /// Escape stops recording, Backspace and Delete clear the shortcut, each without modifiers. Any other combination is
  /// stored, or refused with an alert, which ends recording. Keys without a position on an ANSI keyboard are ignored.
  void keyPressed(std::uint32_t nativeScanCode, int carbonModifiers);

  /// "Ctrl+Alt+G", with the key labels of the current keyboard and the modifiers in the interface language.
  static std::string describe(const KeyCombination& combination, const HotKeys& hotKeys);

 private:
  std::optional<AlertKind> refusalOf(const KeyCombination& combination) const;

  Collaborators collaborators_;
  std::string name_;
  std::optional<GlobalShortcuts::Pause> pause_;
  Connection changes_;
};

}  // namespace quillmark
