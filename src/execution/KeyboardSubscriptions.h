#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "base/Signal.h"
#include "commands/CustomPromptStore.h"
#include "commands/ItemStores.h"
#include "execution/ActionService.h"
#include "execution/ActiveApplicationTracker.h"
#include "execution/CommandPanel.h"
#include "execution/GlobalShortcuts.h"

namespace quillmark {

/// Keeps a global shortcut handler for each shortcut name: the command menu's, one for each action that represents a
/// list of items (the raw value of the action; it takes the default item), and one for each other command. The handlers
/// are registered again when the number of commands changes. Needs no calls once constructed.
class KeyboardSubscriptions {
 public:
  static constexpr const char* commandMenu = "commandMenu";

  KeyboardSubscriptions(GlobalShortcuts& shortcuts, CustomPromptStore& promptStore, const ItemStores& itemStores,
                        ActionService& actionService, CommandPanel& commandPanel, ActiveApplicationTracker& tracker);

 private:
  void subscribe(const std::vector<Command>& commands);
  void onKeyUp(const std::string& name, std::function<void()> action);

  GlobalShortcuts& shortcuts_;
  ItemStores itemStores_;
  ActionService& actionService_;
  CommandPanel& commandPanel_;
  ActiveApplicationTracker& tracker_;
  std::ptrdiff_t promptCount_ = -1;  // no list has this length, so the first list always registers
  Connection commandChanges_;
};

}  // namespace quillmark
