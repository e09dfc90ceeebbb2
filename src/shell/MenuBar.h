#pragma once

#include <functional>
#include <vector>

#include "commands/CustomPromptStore.h"
#include "commands/ItemStores.h"
#include "execution/ActionService.h"
#include "shell/MenuModel.h"
#include "shell/UpdateMenuButton.h"

namespace quillmark {

/// The menu of the status item. Choosing a command leaves the application in front as it was, so that the run's copy
/// key reaches it.
class MenuBar {
 public:
  struct Actions {
    std::function<void()> openSettings;
    std::function<void()> openHelp;
    std::function<void()> quit;
  };

  MenuBar(ActionService& actionService, CustomPromptStore& promptStore, const ItemStores& itemStores,
          UpdateMenuButton& updateButton, Actions actions);

  /// The rows as they should be now: what runs something is disabled while a direct run is under way.
  std::vector<MenuItem> items() const;

  /// The rows may differ from what items() gave last.
  Signal<> changed;

 private:
  MenuItem commandItem(const Command& command, std::string_view icon) const;
  std::vector<MenuItem> itemsOf(ActionCase action, ItemList list) const;

  ActionService& actionService_;
  CustomPromptStore& promptStore_;
  ItemStores itemStores_;
  UpdateMenuButton& updateButton_;
  Actions actions_;
  Connections connections_;
};

}  // namespace quillmark
