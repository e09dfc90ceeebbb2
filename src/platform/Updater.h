#pragma once

#include <string>

#include "base/Signal.h"

namespace quillmark {

/// A newer version on offer.
struct AppcastItem {
  std::string displayVersionString;  ///< such as "2.14.0"
  std::string infoUrl;               ///< the download page; may be unusable
  friend bool operator==(const AppcastItem&, const AppcastItem&) = default;
};

/// What a user who was shown an update wants done with it: never this one, now, or later.
enum class UserUpdateChoice { skip, install, dismiss };

/// Why an update is shown.
struct UserUpdateState {
  bool userInitiated = false;  ///< the user asked for it; otherwise the updater checked on its own
};

/// Is told what an updater does. A session begins with a check and ends when the check finds nothing or fails, or when
/// the user has made a choice.
class UpdaterDelegate {
 public:
  UpdaterDelegate() = default;
  UpdaterDelegate(const UpdaterDelegate&) = delete;
  UpdaterDelegate& operator=(const UpdaterDelegate&) = delete;
  virtual ~UpdaterDelegate() = default;

  virtual void didFindValidUpdate(const AppcastItem& update) = 0;
  virtual void didNotFindUpdate() = 0;
  virtual void userDidMakeChoice(UserUpdateChoice choice, const AppcastItem& update, UserUpdateState state) = 0;
  /// For an updater that installs updates itself.
  virtual void willInstallUpdate(const AppcastItem& update) = 0;
  virtual void didAbortWithError(const std::string& error) = 0;

  /// Whether the delegate itself reminds the user of an update found by a background check, so that the updater opens
  /// no window.
  virtual bool supportsGentleScheduledUpdateReminders() const = 0;
  /// Whether the updater rather than the delegate shows such an update.
  virtual bool shouldHandleShowingScheduledUpdate(const AppcastItem& update, bool inImmediateFocus) = 0;
  virtual void willHandleShowingUpdate(bool handledByUpdater, const AppcastItem& update, UserUpdateState state) = 0;
  /// The user has seen the update.
  virtual void didReceiveUserAttention(const AppcastItem& update) = 0;
  virtual void willFinishUpdateSession() = 0;
};

/// Checks for new versions, on its own and on request. Main thread only.
class Updater {
 public:
  Updater() = default;
  Updater(const Updater&) = delete;
  Updater& operator=(const Updater&) = delete;
  virtual ~Updater() = default;

  /// Checks now and shows the user the outcome. Does nothing while `canCheckForUpdates` is false.
  virtual void checkForUpdates() = 0;

  Observable<bool> canCheckForUpdates{false};
};

}  // namespace quillmark
