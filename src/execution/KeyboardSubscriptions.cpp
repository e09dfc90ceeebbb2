#include "execution/KeyboardSubscriptions.h"

#include "base/Log.h"

namespace quillmark {

KeyboardSubscriptions::KeyboardSubscriptions(GlobalShortcuts& shortcuts, CustomPromptStore& promptStore,
                                             const ItemStores& itemStores, ActionService& actionService,
                                             CommandPanel& commandPanel, ActiveApplicationTracker& tracker)
    : shortcuts_(shortcuts),
      itemStores_(itemStores),
      actionService_(actionService),
      commandPanel_(commandPanel),
      tracker_(tracker) {
  commandChanges_ = promptStore.prompts.bind([this](const std::vector<Command>& commands) { subscribe(commands); });
}

void KeyboardSubscriptions::onKeyUp(const std::string& name, std::function<void()> action) {
  shortcuts_.onKeyUp(name, [this, action = std::move(action)] {
    tracker_.markCommandTriggered(true);
    action();
  });
}

void KeyboardSubscriptions::subscribe(const std::vector<Command>& commands) {
  const std::ptrdiff_t count = std::ssize(commands);
  if (count == promptCount_) {
    return;
  }
  log("Subscribe to keyboard shortcuts. Prompt count " + std::to_string(count) +
      " prevCount: " + std::to_string(promptCount_));
  shortcuts_.removeAllHandlers();
  onKeyUp(commandMenu, [this] { commandPanel_.togglePanel(InvocationSource::keyboardShortcut); });
  for (const ActionCase action : filteredActions()) {
    onKeyUp(UserAction(action).identifier(), [this, action] {
      if (const auto item = itemStores_[*info(action).items()].defaultItem()) {
        actionService_.runAction({action, item->name}, true);
      }
    });
  }
  for (const auto& command : commands) {
    if (!command.type.isExpanded()) {
      onKeyUp(command.shortcutName(), [this, id = command.id] { actionService_.runCommandById(id, true); });
    }
  }
  promptCount_ = count;
}

}  // namespace quillmark
