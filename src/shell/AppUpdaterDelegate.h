#pragma once

#include <functional>
#include <optional>
#include <string>

#include "base/Lifetime.h"
#include "base/Signal.h"
#include "platform/MainQueue.h"
#include "platform/Updater.h"

namespace quillmark {

/// What the updater has found, for the rest of the program. Each callback takes effect in its own block of the main
/// queue.
class AppUpdaterDelegate : public UpdaterDelegate {
 public:
  explicit AppUpdaterDelegate(MainQueue& queue) : queue_(queue) {}

  const Observable<bool>& updateAvailable() const { return updateAvailable_; }
  const Observable<std::optional<AppcastItem>>& availableUpdate() const { return availableUpdate_; }
  Signal<> stopGentleReminders;  ///< the user has seen the update, or there is none

  void didFindValidUpdate(const AppcastItem& update) override;
  void didNotFindUpdate() override;
  void userDidMakeChoice(UserUpdateChoice choice, const AppcastItem& update, UserUpdateState state) override;
  void willInstallUpdate(const AppcastItem& update) override;
  void didAbortWithError(const std::string& error) override;
  bool supportsGentleScheduledUpdateReminders() const override { return true; }
  bool shouldHandleShowingScheduledUpdate(const AppcastItem&, bool) override { return true; }
  void willHandleShowingUpdate(bool handledByUpdater, const AppcastItem& update, UserUpdateState state) override;
  void didReceiveUserAttention(const AppcastItem& update) override;
  void willFinishUpdateSession() override;

 private:
  void setAvailable(const AppcastItem& update);
  void clear();
  void stopLater();

  MainQueue& queue_;
  Observable<bool> updateAvailable_{false};
  Observable<std::optional<AppcastItem>> availableUpdate_;
  Lifetime lifetime_;
};

}  // namespace quillmark
