#include "execution/ShortcutRecorder.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "base/Localization.h"

namespace quillmark {
namespace {

enum VirtualKey { forwardDelete = 0x75, backspace = 0x33, escape = 0x35 };

// F1 to F20.
constexpr int functionKeys[] = {0x7A, 0x78, 0x63, 0x76, 0x60, 0x61, 0x62, 0x64, 0x65, 0x6D,
                                0x67, 0x6F, 0x69, 0x6B, 0x71, 0x6A, 0x40, 0x4F, 0x50, 0x5A};

namespace texts {
constexpr const char* record_shortcut = trLater("Record Shortcut");
constexpr const char* press_shortcut = trLater("Press Shortcut");
constexpr const char* keyboard_shortcut_used_by_system =
    trLater("This keyboard shortcut can't be used because another program uses it.");
constexpr const char* keyboard_shortcut_used_by_menu_item =
    trLater("This keyboard shortcut can't be used because the menu item “{}” uses it.");
constexpr const char* keyboard_shortcut_used_by_shortcut =
    trLater("This keyboard shortcut can't be used because “{}” has it already.");
constexpr const char* keyboard_shortcuts_can_be_changed =
    trLater("Keyboard shortcuts can be changed in the settings of the program that uses them.");
constexpr const char* keyboard_shortcut_needs_modifier =
    trLater("A keyboard shortcut needs Ctrl, Alt or Super, or a function key.");
}  // namespace texts

/// Whether the combination is never ordinary typing.
bool isForShortcuts(const KeyCombination& combination) {
  constexpr int any = KeyCombination::control | KeyCombination::option | KeyCombination::command;
  return (combination.carbonModifiers & any) != 0 ||
         std::ranges::find(functionKeys, combination.carbonKeyCode) != std::end(functionKeys);
}

}  // namespace

ShortcutRecorder::ShortcutRecorder(Collaborators collaborators, std::string name)
    : collaborators_(std::move(collaborators)), name_(std::move(name)) {
  changes_ = collaborators_.shortcuts.shortcutByNameDidChange.connect([this](const std::string& changedName) {
    if (changedName == name_) {
      changed.emit();
    }
  });
}

std::string ShortcutRecorder::describe(const KeyCombination& combination, const HotKeys& hotKeys) {
  const std::pair<int, const char*> modifiers[] = {{KeyCombination::control, trLater("Ctrl")},
                                                   {KeyCombination::option, trLater("Alt")},
                                                   {KeyCombination::shift, trLater("Shift")},
                                                   {KeyCombination::command, trLater("Super")}};
  std::string text;
  for (const auto& [flag, label] : modifiers) {
    if ((combination.carbonModifiers & flag) != 0) {
      text += tr(label) + "+";
    }
  }
  return text + hotKeys.keyLabel(combination.carbonKeyCode);
}

std::string ShortcutRecorder::text() const {
  if (isRecording()) {
    return tr(texts::press_shortcut);
  }
  const auto combination = collaborators_.shortcuts.getShortcut(name_);
  return combination ? describe(*combination, collaborators_.hotKeys) : tr(texts::record_shortcut);
}

void ShortcutRecorder::begin() {
  if (!isRecording()) {
    pause_.emplace(collaborators_.shortcuts);
    changed.emit();
  }
}

void ShortcutRecorder::end() {
  if (isRecording()) {
    pause_.reset();
    changed.emit();
  }
}

void ShortcutRecorder::clear() {
  collaborators_.shortcuts.setShortcut(name_, std::nullopt);
  end();
}

void ShortcutRecorder::keyPressed(std::uint32_t nativeScanCode, int carbonModifiers) {
  const auto position = collaborators_.hotKeys.keyCodeOf(nativeScanCode);
  if (!isRecording() || !position) {
    return;
  }
  const KeyCombination combination{*position, carbonModifiers};
  if (combination == KeyCombination{escape, 0}) {
    end();
    return;
  }
  if (combination == KeyCombination{backspace, 0} || combination == KeyCombination{forwardDelete, 0}) {
    clear();
    return;
  }
  const auto refusal = refusalOf(combination);
  if (!refusal) {
    collaborators_.shortcuts.setShortcut(name_, combination);
  }
  end();
  if (refusal) {
    collaborators_.alertHandler.show(*refusal);
  }
}

std::optional<AlertKind> ShortcutRecorder::refusalOf(const KeyCombination& combination) const {
  const auto refused = [](std::string reason) {
    return AlertKind::notice(std::move(reason), tr(texts::keyboard_shortcuts_can_be_changed));
  };
  if (!isForShortcuts(combination)) {
    return AlertKind::notice(describe(combination, collaborators_.hotKeys),
                             tr(texts::keyboard_shortcut_needs_modifier));
  }
  if (const auto item = collaborators_.menuItemUsing(combination)) {
    return refused(tr(texts::keyboard_shortcut_used_by_menu_item, *item));
  }
  if (const auto other = collaborators_.shortcuts.nameUsing(combination); other && *other != name_) {
    return AlertKind::notice(tr(texts::keyboard_shortcut_used_by_shortcut, collaborators_.titleOf(*other)), "");
  }
  if (!collaborators_.hotKeys.isAvailable(combination)) {
    return refused(tr(texts::keyboard_shortcut_used_by_system));
  }
  return std::nullopt;
}

}  // namespace quillmark
