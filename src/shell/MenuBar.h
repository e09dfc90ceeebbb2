#pragma once

#include <functional>
#include <vector>

#include "commands/CustomPromptStore.h"
#include "commands/ItemStores.h"
#include "execution/ActionService.h"
#include "shell/MenuModel.h"
#include "shell/UpdateMenuButton.h"

namespace quillmark {

/// The menu of the status item. Choosing a command does not change the application in front, so that the run's copy key
/// reaches it.
class MenuBar {
 public:
  struct Actions {
    std::function<void()> openSettings;
    std::function<void()> openHelp;
    std::function<void()> quit;
  };

  MenuBar(ActionService& actionService, CustomPromptStore& promptStore, const ItemStores& itemStores,
          UpdateMenuButton& updateButton, Actions actions);

  /// The current rows: those that run something are disabled while a direct run is in progress.
  std::vector<MenuItem> items() const;

  /// The rows may differ from the last items().
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
