#pragma once

#include <optional>
#include <set>
#include <string>

#include "commands/CustomPromptStore.h"
#include "platform/AlertHandler.h"
#include "platform/HotKeys.h"
#include "shell/MenuBar.h"

namespace quillmark {

/// What people call the global shortcuts, and what else of this program has a key combination. Tells the user once of
/// each shortcut that can't be used. Main thread only.
class ShortcutDirectory {
 public:
  ShortcutDirectory(HotKeys& hotKeys, AlertHandler& alertHandler, const CustomPromptStore& promptStore,
                    const MenuBar& menuBar);

  /// The title of what the shortcut of this name does; the name itself where nothing has it.
  std::string titleOf(const std::string& name) const;
  /// The title of the menu item that a combination chooses, if there is one.
  std::optional<std::string> menuItemUsing(const KeyCombination& combination) const;

 private:
  void refused(const std::string& name);

  const HotKeys& hotKeys_;
  AlertHandler& alertHandler_;
  const CustomPromptStore& promptStore_;
  const MenuBar& menuBar_;
  std::set<std::string> refused_;
  Connection refusals_;
};

}  // namespace quillmark
