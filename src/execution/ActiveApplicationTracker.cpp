#include "execution/ActiveApplicationTracker.h"

#include "base/Log.h"

namespace quillmark {
ActiveApplicationTracker::ActiveApplicationTracker(Workspace& workspace, const MainQueue& queue,
                                                   std::optional<std::string> ownBundleId)
    : queue_(queue), ownBundleId_(std::move(ownBundleId)) {
  log("Setup setupWorkspaceObserver");
  activations_ = workspace.didActivateApplication.connect([this](const Application& app) { recordActivation(app); });
  if (const Application front = workspace.frontmostApplication()) {
    recordActivation(front);
  }
}

void ActiveApplicationTracker::recordActivation(const Application& app) {
  if (!app) {
    return;
  }
  appActivationTimeline_.push_back({app, queue_.now(), app->bundleIdentifier()});
  if (appActivationTimeline_.size() > maxTimelineEntries) {
    appActivationTimeline_.pop_front();
  }
}

void ActiveApplicationTracker::markCommandTriggered(bool force) {
  if (commandTriggerTimestamp_ && !force) {
    log("Command trigger timestamp already set at " + describe(*commandTriggerTimestamp_) + " - not overriding");
    return;
  }
  commandTriggerTimestamp_ = queue_.now();
  log("Command triggered at " + describe(*commandTriggerTimestamp_));
}

void ActiveApplicationTracker::clearCommandTrigger() {
  commandTriggerTimestamp_.reset();
  log("Command trigger timestamp cleared");
}

Application ActiveApplicationTracker::appBeforeCommand() const {
  if (!commandTriggerTimestamp_) {
    log("No command trigger timestamp - using last non-Quillmark app");
    return lastNonOwnApp();
  }
  const Date cutoff = *commandTriggerTimestamp_ - std::chrono::duration_cast<Date::duration>(
                                                      std::chrono::duration<double, std::milli>(preCommandLookbackMs));
  const AppActivation* best = nullptr;
  for (const auto& activation : appActivationTimeline_) {
    // Of two entries at the same moment the earlier one is kept.
    if (activation.timestamp <= cutoff && (best == nullptr || activation.timestamp > best->timestamp)) {
      best = &activation;
    }
  }
  if (best == nullptr) {
    return lastNonOwnApp();
  }
  const char* own = best->bundleId == ownBundleId_ ? "(Quillmark)" : "";
  log("Found app active before command: " + best->app->localizedName().value_or("Unknown") + " " + own);
  return best->app;
}

Application ActiveApplicationTracker::lastNonOwnApp() const {
  for (auto entry = appActivationTimeline_.rbegin(); entry != appActivationTimeline_.rend(); ++entry) {
    if (entry->bundleId != ownBundleId_) {
      return entry->app;
    }
  }
  return nullptr;
}

void ActiveApplicationTracker::restoreFocus() {
  const Application target = appBeforeCommand();
  if (!target) {
    log("No valid app to restore to");
    return;
  }
  if (target->bundleIdentifier() == ownBundleId_) {
    log("Target app is Quillmark - not switching");
    return;
  }
  log("Restoring to app: " + target->localizedName().value_or("Unknown") + " (" +
      target->bundleIdentifier().value_or("unknown bundle") + ")");
  target->activate();
  clearCommandTrigger();
}

}  // namespace quillmark
