#pragma once

#include <chrono>

#include "base/Lifetime.h"
#include "base/Signal.h"
#include "platform/MainQueue.h"
#include "platform/Updater.h"
#include "shell/AppUpdaterDelegate.h"

namespace quillmark {

/// Reminds the user of an available update, a few times and briefly: an hour after it was found, then once a day. Main
/// thread only.
class CheckForUpdatesViewModel {
 public:
  static constexpr Duration initialReminderDelay = std::chrono::hours(1);
  static constexpr Duration reminderInterval = std::chrono::hours(24);
  static constexpr Duration reminderLength = std::chrono::seconds(15);
  static constexpr int maxReminders = 3;  ///< daily ones, besides the first

  CheckForUpdatesViewModel(MainQueue& queue, Updater& updater, AppUpdaterDelegate& delegate);

  const Observable<bool>& canCheckForUpdates() const { return canCheckForUpdates_; }
  /// The menu entry is highlighted.
  const Observable<bool>& shouldShowGentleReminder() const { return shouldShowGentleReminder_; }

 private:
  void startGentleReminders();
  void stopGentleReminders();
  void showGentleReminder();

  MainQueue& queue_;
  Observable<bool> canCheckForUpdates_{false};
  Observable<bool> shouldShowGentleReminder_{false};
  TimerHandle initialReminder_;
  TimerHandle gentleReminderTimer_;
  TimerHandle reminderEnd_;
  int reminderCount_ = 0;
  Connections connections_;
  Lifetime lifetime_;
};

}  // namespace quillmark
