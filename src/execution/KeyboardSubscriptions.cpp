#include "execution/KeyboardSubscriptions.h"

#include <algorithm>

#include "base/Log.h"

namespace quillmark {

KeyboardSubscriptions::KeyboardSubscriptions(GlobalShortcuts& shortcuts, CustomPromptStore& promptStore,
                                             LanguageStore& languageStore, ToneStore& toneStore,
                                             ActionService& actionService, CommandPanel& commandPanel,
                                             ActiveApplicationTracker& tracker)
    : shortcuts_(shortcuts),
      languageStore_(languageStore),
      toneStore_(toneStore),
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
  onKeyUp(translate, [this] {
    if (const auto item = languageStore_.defaultItem()) {
      actionService_.runAction(UserAction::translate(item->name), true);
    }
  });
  onKeyUp(changeTone, [this] {
    if (const auto item = toneStore_.defaultItem()) {
      actionService_.runAction(UserAction::changeTone(item->name), true);
    }
  });
  for (const auto& command : commands) {
    const bool isUmbrella = std::any_of(filteredActions().begin(), filteredActions().end(),
                                        [&](ActionCase action) { return command.type == UserAction(action); });
    if (!isUmbrella) {
      onKeyUp(command.shortcutName(), [this, id = command.id] { actionService_.runCommandById(id, true); });
    }
  }
  promptCount_ = count;
}

}  // namespace quillmark
