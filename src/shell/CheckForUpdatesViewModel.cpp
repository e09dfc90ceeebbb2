#include "shell/CheckForUpdatesViewModel.h"

namespace quillmark {

CheckForUpdatesViewModel::CheckForUpdatesViewModel(MainQueue& queue, Updater& updater, AppUpdaterDelegate& delegate)
    : queue_(queue) {
  connections_ += updater.canCheckForUpdates.bind([this](bool can) { canCheckForUpdates_.set(can); });
  connections_ += delegate.updateAvailable().bind(
      [this](bool available) { available ? startGentleReminders() : stopGentleReminders(); });
  connections_ += delegate.stopGentleReminders.connect([this] { stopGentleReminders(); });
}

void CheckForUpdatesViewModel::stopGentleReminders() {
  // Also the first one: after an answer there must be no reminder.
  initialReminder_.cancel();
  gentleReminderTimer_.cancel();
  reminderEnd_.cancel();
  reminderCount_ = 0;
  shouldShowGentleReminder_.set(false);
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
  shouldShowGentleReminder_.set(true);
  reminderEnd_.cancel();
  reminderEnd_ = queue_.after(reminderLength, lifetime_.guard([this] { shouldShowGentleReminder_.set(false); }));
}

}  // namespace quillmark
