#include "execution/ActionService.h"

#include "base/Localization.h"
#include "base/Log.h"

namespace quillmark {
namespace {

AlertKind accessRequired() {
  return AlertKind::notice(
      tr("Accessibility Access Required"),
      tr("Quillmark requires accessibility permissions to function. Please enable accessibility access in System "
         "Preferences > Security & Privacy > Privacy > Accessibility."));
}

AlertKind commandNotFound(const UserAction& action) {
  return AlertKind::notice(tr("Command {} Not Found", action.title()),
                           tr("The command {} is not available. Did you delete it? You can add it again with the 'Add "
                              "Template' button.",
                              action.title()));
}

AlertKind commandNotFound() {
  return AlertKind::notice(tr("Command Not Found"), tr("The command is not available. Did you delete it?"));
}

AlertKind commandNotFound(const std::string& slug) {
  return AlertKind::notice(tr("Command Not Found"), tr("No command found for slug {}. Did you delete it?", slug));
}

AlertKind refused(const RunRefusal& refusal) {
  switch (refusal.reason) {
    case RunRefusal::Reason::providerNotFound:
      return AlertKind::notice(
          tr("Provider Not Found"),
          tr("The selected provider could not be found. Please check the command settings and try again."));
    case RunRefusal::Reason::providerDisabled:
      break;
  }
  return AlertKind::notice(tr("Provider {} Disabled", refusal.providerName),
                           tr("The selected provider is disabled. Click the 'Verify & Activate' button in the provider "
                              "settings to enable it, or select a different default or command provider."));
}

}  // namespace

ActionService::ActionService(const Collaborators& collaborators)
    : defaultBehavior(collaborators.defaults, keys::defaultBehavior),
      isLoading(collaborators.defaults, keys::isLoading, Durability::endOfProcess),
      collaborators_(collaborators) {
  isLoading.set(false);
}

void ActionService::runCommand(const Command& command, bool shouldCopy) {
  if (collaborators_.permissions.keyInjection() != Permission::granted) {
    log("No accessibility access");
    collaborators_.alerts.show(accessRequired());
    return;
  }
  if (isLoading.get()) {
    return;
  }
  collaborators_.tracker.markCommandTriggered(false);
  // Fixed here: a change of the setting does not affect a run in progress.
  const ActionBehavior behavior = command.behavior.value_or(defaultBehavior.get());
  if (behavior == ActionBehavior::showReview) {
    collaborators_.capture.getSelectedText(
        shouldCopy, lifetime_.guard([this, command](const std::string& text) { handleReviewAction(text, command); }));
    return;
  }
  if (collaborators_.loadingPanel != nullptr) {
    collaborators_.loadingPanel->show();
  }
  isLoading.set(true);
  collaborators_.capture.getSelectedText(shouldCopy,
                                         lifetime_.guard([this, command, behavior](const std::string& text) {
                                           handleDirectAction(text, command, behavior);
                                         }));
}

void ActionService::runCommandById(const std::optional<Uuid>& id, bool shouldCopy) {
  if (const auto command = collaborators_.promptStore.command(id)) {
    runCommand(*command, shouldCopy);
  } else {
    collaborators_.alerts.show(commandNotFound());
  }
}

void ActionService::runAction(const UserAction& action, bool shouldCopy) {
  if (auto command = collaborators_.promptStore.commandFor(action)) {
    command->type = action;
    runCommand(*command, shouldCopy);
  } else {
    collaborators_.alerts.show(commandNotFound(action));
  }
}

void ActionService::runCommandBySlug(const std::string& slug, bool shouldCopy) {
  if (const auto command = collaborators_.promptStore.commandForSlug(slug)) {
    runCommand(*command, shouldCopy);
  } else {
    collaborators_.alerts.show(commandNotFound(slug));
  }
}

void ActionService::handleDirectAction(const std::string& text, const Command& command, ActionBehavior behavior) {
  if (text.empty()) {
    log("copied text is empty");
    hideLoading();
    return;
  }
  log("handle action " + command.name + " with selected text: \n " + text);
  const auto run = prepareRun(command, collaborators_.runSources);
  lastRunCommand_ = command;
  collaborators_.promptStore.incrementUsage(command.id);
  collaborators_.statistics.recordCommand(command.name);  // a refused run counts too
  if (!run) {
    collaborators_.alerts.show(refused(run.error()));
    hideLoading();
    return;
  }
  const auto finish = [this, selection = text, behavior,
                       name = run->provider->name()](const std::optional<std::string>& result) {
    collaborators_.statistics.recordProvider(name);
    hideLoading();
    if (!result) {
      return;
    }
    if (pastes(behavior)) {
      collaborators_.tracker.restoreFocus();
    }
    collaborators_.capture.apply(behavior, *result, selection);
  };
  run->ask(text, collaborators_.queue, lifetime_.guard(finish));
}

void ActionService::handleReviewAction(const std::string& text, const Command& command) {
  if (text.empty()) {
    log("copied text is empty");
    return;
  }
  log("handle action " + command.name + " with selected text for review: \n " + text);
  collaborators_.queue.async(lifetime_.guard([this, text, command] {
    collaborators_.reviewSession.setCommand(command);
    collaborators_.reviewSession.open("", text);
    collaborators_.reviewSession.execute(command, text);
  }));
}

void ActionService::hideLoading() {
  collaborators_.queue.async(lifetime_.guard([this] {
    isLoading.set(false);
    if (collaborators_.loadingPanel != nullptr) {
      collaborators_.loadingPanel->hide();
    }
  }));
}

}  // namespace quillmark
