#include "panels/menu/CommandPanelViewModel.h"

#include <algorithm>

#include "base/Log.h"
#include "base/Trace.h"

namespace quillmark {

CommandPanelViewModel::CommandPanelViewModel(const Collaborators& collaborators)
    : collaborators_(collaborators),
      menuPanel_(collaborators_.window, collaborators_.screens, true),
      view_(*this),
      opennessChanges_(isCommandOpen().observe([this](bool isOpen) { opennessChanged(isOpen); })) {}

void CommandPanelViewModel::togglePanel(InvocationSource source) {
  log("Open command menu from source " + std::string(rawValue(source)));
  source_ = source;
  if (isCommandOpen()) {
    menuPanel_.close();
    return;
  }
  menuPanel_.windowPosition = collaborators_.settings.commandMenuPosition.get();
  menuPanel_.present();
  trace::mark(trace::commandMenuShown);
  collaborators_.tracker.markCommandTriggered(false);
}

void CommandPanelViewModel::cancel() {
  if (isCommandOpen()) {
    menuPanel_.close();
  }
}

void CommandPanelViewModel::opennessChanged(bool isOpen) {
  if (isOpen) {
    view_.selectFirst();
    return;
  }
  if (pendingRun_) {
    pendingRun_.cancel();
    log("Command menu was closed before its command ran");
  }
  searchText_.set("");
  currentMode_.set(CommandMenuMode::filter);
  view_.clearSelection();
  collaborators_.tracker.clearCommandTrigger();
}

void CommandPanelViewModel::toggleMode() {
  currentMode_.set(currentMode_ == CommandMenuMode::filter ? CommandMenuMode::freestyle : CommandMenuMode::filter);
  searchText_.set("");
}

void CommandPanelViewModel::triggerCommand(const std::optional<Command>& command) {
  if (!isCommandOpen()) {
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
    const bool textLiesOnPasteboard =
        source_ == InvocationSource::urlHandler || source_ == InvocationSource::serviceProvider;
    if (info(command.type.kind).takesParameter()) {
      collaborators_.actionService.runAction(command.type, !textLiesOnPasteboard);
    } else {
      collaborators_.actionService.runCommandById(command.id, !textLiesOnPasteboard);
    }
  });
}

void CommandPanelViewModel::executeFreestyle() {
  if (!isCommandOpen() || pendingRun_ || searchText_->empty()) {
    return;
  }
  closeThenRun(
      [this, task = searchText_.get()] { collaborators_.actionService.runAction(UserAction::freeStyle(task), true); });
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
