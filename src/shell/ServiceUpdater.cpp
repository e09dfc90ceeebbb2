#include "shell/ServiceUpdater.h"

#include "base/Localization.h"
#include "base/Log.h"

namespace quillmark {

ServiceUpdater::ServiceUpdater(MainQueue& queue, UserDefaults& defaults, AlertHandler& alerts, VersionInquiry& inquiry,
                               UpdaterDelegate& delegate)
    : checkForUpdatesAutomatically(defaults, keys::automaticChecks),
      queue_(queue),
      alerts_(alerts),
      inquiry_(inquiry),
      delegate_(delegate) {
  const auto follow = [this](bool automatic) {
    if (!automatic) {
      nextCheck_.cancel();
    } else if (!nextCheck_) {
      schedule(firstCheck);
    }
  };
  switched_ = checkForUpdatesAutomatically.observe(follow);
  follow(checkForUpdatesAutomatically.get());
  canCheckForUpdates.set(true);
}

void ServiceUpdater::schedule(Duration delay) {
  nextCheck_ = queue_.after(delay, lifetime_.guard([this] {
    schedule(checkInterval);
    check({.userInitiated = false});
  }));
}

void ServiceUpdater::check(UserUpdateState state) {
  if (!canCheckForUpdates.get()) {
    return;
  }
  canCheckForUpdates.set(false);
  inquiry_.ask(lifetime_.guard([this, state](const Expected<AppVersion, TransportError>& newest) {
    if (!newest) {
      failed(newest.error(), state);
    } else if (!inquiry_.isNewer(newest->version) || (!state.userInitiated && newest->version == skippedVersion_)) {
      foundNothing(state);
    } else {
      found({newest->version, newest->updateUrl}, state);
    }
  }));
}

void ServiceUpdater::found(const AppcastItem& update, UserUpdateState state) {
  if (!state.userInitiated && update == pending_) {
    canCheckForUpdates.set(true);
    return;  // so that its reminders run to their end
  }
  pending_ = update;
  delegate_.didFindValidUpdate(update);
  if (state.userInitiated) {
    delegate_.willHandleShowingUpdate(true, update, state);
    offer(update, state);
    return;
  }
  delegate_.willHandleShowingUpdate(delegate_.shouldHandleShowingScheduledUpdate(update, false), update, state);
  if (delegate_.supportsGentleScheduledUpdateReminders()) {
    canCheckForUpdates.set(true);
  } else {
    offer(update, state);
  }
}

void ServiceUpdater::foundNothing(UserUpdateState state) {
  delegate_.didNotFindUpdate();
  finishSession();
  if (state.userInitiated) {
    inquiry_.showUpToDate();
  }
}

void ServiceUpdater::failed(const TransportError& error, UserUpdateState state) {
  log("Failed to check for updates: " + error.description);
  delegate_.didAbortWithError(error.description);
  finishSession();
  if (state.userInitiated) {
    inquiry_.showFailure(error);
  }
}

void ServiceUpdater::offer(const AppcastItem& update, UserUpdateState state) {
  delegate_.didReceiveUserAttention(update);
  alerts_.show(
      {AlertStyle::informational,
       tr("Quillmark {} Is Available", update.displayVersionString),
       tr("You have version {}. The package manager of your system installs updates of Quillmark. If you did not get "
          "Quillmark that way, get the new version from the download page.",
          inquiry_.appVersion.get()),
       {tr("Open Download Page"), tr("Skip This Version"), tr("Remind Me Later")}},
      lifetime_.guard([this, update, state](std::size_t button) {
        using enum UserUpdateChoice;
        chosen(button == 0 ? install : button == 1 ? skip : dismiss, update, state);
      }));
}

void ServiceUpdater::chosen(UserUpdateChoice choice, const AppcastItem& update, UserUpdateState state) {
  skippedVersion_ = choice == UserUpdateChoice::skip ? update.displayVersionString : std::string();
  delegate_.userDidMakeChoice(choice, update, state);
  finishSession();
  if (choice == UserUpdateChoice::install) {
    inquiry_.openDownload(update.infoUrl);
  }
}

void ServiceUpdater::finishSession() {
  pending_.reset();
  delegate_.willFinishUpdateSession();
  canCheckForUpdates.set(true);
}

}  // namespace quillmark
