#include "panels/menu/CommandPanelViewModel.h"

#include <algorithm>

#include "base/Log.h"
#include "base/Trace.h"

namespace quillmark {

CommandPanelViewModel::CommandPanelViewModel(const Collaborators& collaborators)
    : collaborators_(collaborators),
      menuPanel_(collaborators_.window, collaborators_.screens, isCommandOpen, true),
      view_(*this) {
  opennessChanges_ = isCommandOpen.observe([this](bool isOpen) { opennessChanged(isOpen); });
}

void CommandPanelViewModel::togglePanel() {
  if (isCommandOpen) {
    menuPanel_.close();
    return;
  }
  menuPanel_.windowPosition = collaborators_.settings.commandMenuPosition.get();
  menuPanel_.present();
  trace::mark(trace::commandMenuShown);
  collaborators_.tracker.markCommandTriggered(false);
}

void CommandPanelViewModel::cancel() {
  if (isCommandOpen) {
    menuPanel_.close();
  }
}

void CommandPanelViewModel::opennessChanged(bool isOpen) {
  if (isOpen == wasOpen_) {
    return;  // a window that is told to close may lose the keyboard on the way, which closes it once more
  }
  wasOpen_ = isOpen;
  if (isOpen) {
    view_.selectFirst();
    return;
  }
  if (pendingRun_) {
    pendingRun_.cancel();
    log("Command menu was closed before its command ran");
  }
  view_.resetView(true);
  collaborators_.tracker.clearCommandTrigger();
}

void CommandPanelViewModel::toggleMode() {
  currentMode.set(currentMode == CommandMenuMode::filter ? CommandMenuMode::freestyle : CommandMenuMode::filter);
  searchText.set("");
}

void CommandPanelViewModel::triggerCommand(const std::optional<Command>& command) {
  if (!isCommandOpen) {
    log("Command menu is not open");
    return;
  }
  if (pendingRun_) {
    return;
  }
  if (!command) {
    log("No prompt selected");
    return;
  }
  log("trigger command: " + command->name);
  closeThenRun([this, command = *command] {
    if (actionService == nullptr) {
      return;
    }
    const bool textLiesOnPasteboard =
        source.get() == InvocationSource::urlHandler || source.get() == InvocationSource::serviceProvider;
    if (info(command.type.kind).takesParameter()) {
      actionService->runAction(command.type, !textLiesOnPasteboard);
    } else {
      actionService->runCommandById(command.id, !textLiesOnPasteboard);
    }
  });
}

void CommandPanelViewModel::executeFreestyle() {
  if (!isCommandOpen || pendingRun_ || searchText->empty()) {
    return;
  }
  closeThenRun([this, task = searchText.get()] {
    if (actionService != nullptr) {
      actionService->runAction(UserAction::freeStyle(task), true);
    }
  });
}

void CommandPanelViewModel::closeThenRun(std::function<void()> run) {
  pendingRun_ = collaborators_.queue.after(triggerDelay, lifetime_.guard([this, run = std::move(run)] {
    pendingRun_ = {};
    menuPanel_.close();
    collaborators_.tracker.restoreFocus();
    run();
  }));
}

std::vector<const Command*> CommandPanelViewModel::enabledCommands() const {
  std::vector<const Command*> list;
  for (const auto& command : collaborators_.promptStore.searchableCommands.get()) {
    if (command.enabled) {
      list.push_back(&command);
    }
  }
  std::ranges::stable_sort(list, std::ranges::greater(), &Command::usageCount);
  return list;
}

}  // namespace quillmark
