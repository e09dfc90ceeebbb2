#pragma once

#include <optional>
#include <set>
#include <string>

#include "commands/CustomPromptStore.h"
#include "platform/AlertHandler.h"
#include "platform/HotKeys.h"
#include "shell/MenuBar.h"

namespace quillmark {

/// The titles of the global shortcuts, and this program's other key combinations. Tells the user once about each
/// shortcut that can't be used. Main thread only.
class ShortcutDirectory {
 public:
  ShortcutDirectory(HotKeys& hotKeys, AlertHandler& alertHandler, const CustomPromptStore& promptStore,
                    const MenuBar& menuBar);

  /// The title of what the shortcut of this name runs; the name itself if it runs nothing.
  std::string titleOf(const std::string& name) const;
  /// The title of the menu item with this combination, if any.
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
