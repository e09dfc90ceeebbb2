#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "base/Lifetime.h"
#include "platform/AlertHandler.h"
#include "platform/MainQueue.h"
#include "platform/Updater.h"
#include "shell/VersionInquiry.h"

namespace quillmark {

/// The updater of systems with a package manager: asks the hosted service for new versions, and leaves downloading and
/// installing them to the user. While automatic checks are on it also checks in the background; what it finds that way
/// is only reported to the delegate, while a check by the user shows its outcome.
class ServiceUpdater : public Updater {
 public:
  /// Delay after the start, or after the user has turned automatic checks on.
  static constexpr Duration firstCheck = std::chrono::minutes(10);
  static constexpr Duration checkInterval = std::chrono::hours(24);

  /// Starts the background checks.
  ServiceUpdater(MainQueue& queue, UserDefaults& defaults, AlertHandler& alerts, VersionInquiry& inquiry,
                 UpdaterDelegate& delegate);

  Setting<bool> checkForUpdatesAutomatically;

  void checkForUpdates() override { check({.userInitiated = true}); }

 private:
  void schedule(Duration delay);
  void check(UserUpdateState state);
  void found(const AppcastItem& update, UserUpdateState state);
  void foundNothing(UserUpdateState state);
  void failed(const TransportError& error, UserUpdateState state);
  void offer(const AppcastItem& update, UserUpdateState state);
  void chosen(UserUpdateChoice choice, const AppcastItem& update, UserUpdateState state);
  void finishSession();

  MainQueue& queue_;
  AlertHandler& alerts_;
  VersionInquiry& inquiry_;
  UpdaterDelegate& delegate_;
  std::optional<AppcastItem> pending_;  // reported, but not answered by the user yet
  std::string skippedVersion_;
  TimerHandle nextCheck_;
  Connection switched_;
  Lifetime lifetime_;
};

}  // namespace quillmark
