#include "shell/CheckForUpdatesViewModel.h"

namespace quillmark {

CheckForUpdatesViewModel::CheckForUpdatesViewModel(MainQueue& queue, Updater& updater, AppUpdaterDelegate& delegate)
    : queue_(queue) {
  checkable_ = updater.canCheckForUpdates.bind([this](bool can) { canCheckForUpdates.set(can); });
  availability_ = delegate.updateAvailable.bind(
      [this](bool available) { available ? startGentleReminders() : stopGentleReminders(); });
  stops_ = delegate.stopGentleReminders.connect([this] { stopGentleReminders(); });
}

void CheckForUpdatesViewModel::stopGentleReminders() {
  // Also the first one: whoever has answered must not be reminded afterwards.
  initialReminder_.cancel();
  gentleReminderTimer_.cancel();
  reminderEnd_.cancel();
  reminderCount_ = 0;
  shouldShowGentleReminder.set(false);
}

void CheckForUpdatesViewModel::startGentleReminders() {
  stopGentleReminders();
  initialReminder_ = queue_.after(initialReminderDelay, lifetime_.guard([this] { showGentleReminder(); }));
  gentleReminderTimer_ = queue_.every(reminderInterval, lifetime_.guard([this] {
    if (reminderCount_ < maxReminders) {
      ++reminderCount_;
      showGentleReminder();
    } else {
      stopGentleReminders();
    }
  }));
}

void CheckForUpdatesViewModel::showGentleReminder() {
  shouldShowGentleReminder.set(true);
  reminderEnd_.cancel();
  reminderEnd_ = queue_.after(reminderLength, lifetime_.guard([this] { shouldShowGentleReminder.set(false); }));
}

}  // namespace quillmark
