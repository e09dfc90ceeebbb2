#include "shell/ShortcutDirectory.h"

#include <algorithm>

#include "base/Localization.h"
#include "execution/KeyboardSubscriptions.h"

namespace quillmark {

ShortcutDirectory::ShortcutDirectory(HotKeys& hotKeys, AlertHandler& alertHandler, const CustomPromptStore& promptStore,
                                     const MenuBar& menuBar)
    : hotKeys_(hotKeys),
      alertHandler_(alertHandler),
      promptStore_(promptStore),
      menuBar_(menuBar),
      refusals_(hotKeys.refused.connect([this](const std::string& name) { refused(name); })) {}

std::string ShortcutDirectory::titleOf(const std::string& name) const {
  if (name == KeyboardSubscriptions::commandMenu) {
    return tr("Command Menu");
  }
  const auto& commands = promptStore_.prompts.get();
  const auto command = std::ranges::find(commands, name, &Command::shortcutName);
  return command == commands.end() ? name : command->displayName();
}

std::optional<std::string> ShortcutDirectory::menuItemUsing(const KeyCombination& combination) const {
  if (combination.carbonModifiers != KeyCombination::control) {
    return std::nullopt;  // the menu's have Control and nothing else
  }
  const auto items = menuBar_.items();
  const std::string shortcut = "Ctrl+" + hotKeys_.keyLabel(combination.carbonKeyCode);
  const auto item = std::ranges::find(items, shortcut, &MenuItem::shortcut);
  return item == items.end() ? std::nullopt : std::optional(item->title);
}

void ShortcutDirectory::refused(const std::string& name) {
  if (!refused_.insert(name).second) {
    return;
  }
  alertHandler_.show(AlertKind::notice(
      tr("Shortcut Not Available"),
      tr("The keyboard shortcut of {} belongs to another program, or this keyboard has no such key. Please choose "
         "another one.",
         titleOf(name))));
}

}  // namespace quillmark
