#include "shell/MenuBar.h"

#include <algorithm>

#include "base/Localization.h"

namespace quillmark {

MenuBar::MenuBar(ActionService& actionService, CustomPromptStore& promptStore, const ItemStores& itemStores,
                 UpdateMenuButton& updateButton, Actions actions)
    : actionService_(actionService),
      promptStore_(promptStore),
      itemStores_(itemStores),
      updateButton_(updateButton),
      actions_(std::move(actions)) {
  const auto tell = [this](const auto&...) { changed.emit(); };
  connections_ += actionService_.isLoading.observe(tell);
  connections_ += promptStore_.prompts.observe(tell);
  connections_ += itemStores_.languages.itemsCache.observe(tell);
  connections_ += itemStores_.tones.itemsCache.observe(tell);
  connections_ += updateButton_.changed.connect(tell);
}

MenuItem MenuBar::commandItem(const Command& command, std::string_view icon) const {
  return MenuItem::action(
      command.displayName(), std::string(icon), [this, id = command.id] { actionService_.runCommandById(id, true); },
      !actionService_.isLoading.get());
}

std::vector<MenuItem> MenuBar::itemsOf(ActionCase action, ItemList list) const {
  ConfigurableStore& store = itemStores_[list];
  std::vector<MenuItem> items;
  for (const auto& item : store.enabledItems()) {
    items.push_back(MenuItem::action(
        store.displayName(item), "",
        [this, action, name = item.name] {
          actionService_.runAction({action, name}, true);
        },
        !actionService_.isLoading.get()));
  }
  return items;
}

std::vector<MenuItem> MenuBar::items() const {
  const bool isLoading = actionService_.isLoading.get();
  std::vector<MenuItem> rows;
  if (isLoading) {
    rows.push_back({MenuItem::Kind::progress, tr("Processing request..."), {}, false, {}, {}, {}});
    rows.push_back(MenuItem::divider());
  }
  for (const auto& command : promptStore_.mainCommands()) {
    rows.push_back(commandItem(command, command.type.icon()));
  }
  for (const auto& action : RawValues<ActionCase>::table) {
    const auto list = action.items();
    const auto command = list ? promptStore_.commandFor(action.key) : std::nullopt;
    if (command && command->enabled) {
      rows.push_back(MenuItem::submenu(tr(action.parameter->menuTitle), std::string(action.icon),
                                       itemsOf(action.key, *list), !isLoading));
    }
  }
  rows.push_back(MenuItem::divider());

  auto categories = allCases<CommandCategory>();
  std::ranges::sort(categories, {}, menuRank);
  for (const auto category : categories) {
    if (category == CommandCategory::mainAction) {
      continue;
    }
    std::vector<MenuItem> children;
    for (const auto& command : promptStore_.commands(category)) {
      children.push_back(commandItem(command, icon(category)));
    }
    if (!children.empty()) {
      rows.push_back(MenuItem::submenu(title(category), std::string(icon(category)), std::move(children), !isLoading));
    }
  }
  rows.push_back(MenuItem::divider());

  rows.push_back(MenuItem::action(tr("Settings"), "gear", actions_.openSettings));
  rows.back().shortcut = "Ctrl+,";
  rows.push_back(MenuItem::action(tr("Help Center"), "questionmark.circle", actions_.openHelp));
  rows.push_back(updateButton_.item());
  rows.push_back(MenuItem::action(tr("Quit"), "", actions_.quit));
  rows.back().shortcut = "Ctrl+Q";
  return rows;
}

}  // namespace quillmark
