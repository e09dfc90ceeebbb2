#include "shell/AppUpdaterDelegate.h"

namespace quillmark {

void AppUpdaterDelegate::didFindValidUpdate(const AppcastItem& update) {
  queue_.async(lifetime_.guard([this, update] { setAvailable(update); }));
}

void AppUpdaterDelegate::didNotFindUpdate() {
  queue_.async(lifetime_.guard([this] {
    clear();
    stopGentleReminders.emit();
  }));
}

void AppUpdaterDelegate::userDidMakeChoice(UserUpdateChoice choice, const AppcastItem&, UserUpdateState) {
  queue_.async(lifetime_.guard([this, choice] {
    stopGentleReminders.emit();
    if (choice != UserUpdateChoice::dismiss) {
      clear();
    }
  }));
}

void AppUpdaterDelegate::willInstallUpdate(const AppcastItem&) {
  queue_.async(lifetime_.guard([this] {
    clear();
    stopGentleReminders.emit();
  }));
}

void AppUpdaterDelegate::didAbortWithError(const std::string&) { stopLater(); }

void AppUpdaterDelegate::willHandleShowingUpdate(bool handledByUpdater, const AppcastItem& update,
                                                 UserUpdateState state) {
  if (handledByUpdater && !state.userInitiated) {
    queue_.async(lifetime_.guard([this, update] { setAvailable(update); }));
  }
}

void AppUpdaterDelegate::didReceiveUserAttention(const AppcastItem&) { stopLater(); }

void AppUpdaterDelegate::willFinishUpdateSession() { stopLater(); }

void AppUpdaterDelegate::setAvailable(const AppcastItem& update) {
  updateAvailable_.set(true);
  availableUpdate_.set(update);
}

void AppUpdaterDelegate::clear() {
  updateAvailable_.set(false);
  availableUpdate_.set(std::nullopt);
}

void AppUpdaterDelegate::stopLater() {
  queue_.async(lifetime_.guard([this] { stopGentleReminders.emit(); }));
}

}  // namespace quillmark
