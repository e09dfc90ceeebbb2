#pragma once

#include <string>

#include "base/Signal.h"

namespace quillmark {

/// A newer version on offer.
struct AppcastItem {
  std::string displayVersionString;  ///< such as "2.14.0"
  std::string infoUrl;               ///< the page to get it from; may be of no use
  friend bool operator==(const AppcastItem&, const AppcastItem&) = default;
};

/// What a user who was shown an update wants done with it: never this one, now, or later.
enum class UserUpdateChoice { skip, install, dismiss };

/// How an update came to be shown.
struct UserUpdateState {
  bool userInitiated = false;  ///< the user asked; otherwise the updater looked by itself
};

/// Hears of what an updater does. A session begins with a check; it ends when the check has found nothing or failed, or
/// when the user has made a choice.
class UpdaterDelegate {
 public:
  UpdaterDelegate() = default;
  UpdaterDelegate(const UpdaterDelegate&) = delete;
  UpdaterDelegate& operator=(const UpdaterDelegate&) = delete;
  virtual ~UpdaterDelegate() = default;

  virtual void didFindValidUpdate(const AppcastItem& update) = 0;
  virtual void didNotFindUpdate() = 0;
  virtual void userDidMakeChoice(UserUpdateChoice choice, const AppcastItem& update, UserUpdateState state) = 0;
  /// For an updater that installs by itself.
  virtual void willInstallUpdate(const AppcastItem& update) = 0;
  virtual void didAbortWithError(const std::string& error) = 0;

  /// Whether the delegate reminds the user of an update that nobody asked for, so that the updater opens no window.
  virtual bool supportsGentleScheduledUpdateReminders() const = 0;
  /// Whether the updater is the one that shows such an update, when it comes to that.
  virtual bool shouldHandleShowingScheduledUpdate(const AppcastItem& update, bool inImmediateFocus) = 0;
  virtual void willHandleShowingUpdate(bool handledByUpdater, const AppcastItem& update, UserUpdateState state) = 0;
  /// The user sees the update.
  virtual void didReceiveUserAttention(const AppcastItem& update) = 0;
  virtual void willFinishUpdateSession() = 0;
};

/// Looks for new versions, by itself and when it is asked to. Main thread only.
class Updater {
 public:
  Updater() = default;
  Updater(const Updater&) = delete;
  Updater& operator=(const Updater&) = delete;
  virtual ~Updater() = default;

  /// Looks now and shows the user what comes of it. Does nothing while `canCheckForUpdates` is false.
  virtual void checkForUpdates() = 0;

  Observable<bool> canCheckForUpdates{false};
};

}  // namespace quillmark
