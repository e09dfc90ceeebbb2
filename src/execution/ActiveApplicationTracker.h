#pragma once

#include <cstddef>
#include <deque>
#include <optional>
#include <string>

#include "base/Signal.h"
#include "platform/MainQueue.h"
#include "platform/Workspace.h"

namespace quillmark {

/// One activation of an application.
struct AppActivation {
  Application app;
  Date timestamp;
  std::optional<std::string> bundleId;  ///< at that moment
};

/// Records which application became active when, so that a result goes back to the owner of the selection. The
/// application in front at the trigger is not trusted: it may be there because of the trigger. Main thread only.
class ActiveApplicationTracker {
 public:
  static constexpr std::size_t maxTimelineEntries = 10;
  static constexpr double preCommandLookbackMs = 500.0;

  ActiveApplicationTracker(Workspace& workspace, const MainQueue& queue, std::optional<std::string> ownBundleId);

  void recordActivation(const Application& app);

  /// Records the time of a trigger; without `force` an earlier mark is kept.
  void markCommandTriggered(bool force);
  void clearCommandTrigger();
  std::optional<Date> commandTriggerTimestamp() const { return commandTriggerTimestamp_; }

  /// The application that was active half a second before the trigger; null when it is unknown.
  Application appBeforeCommand() const;
  /// The latest application that is not this one; null when there is none.
  Application lastNonOwnApp() const;
  /// Activates appBeforeCommand() and clears the mark. Does neither when there is none or when it is this application.
  void restoreFocus();

  const std::deque<AppActivation>& timeline() const { return appActivationTimeline_; }

 private:
  const MainQueue& queue_;
  std::optional<std::string> ownBundleId_;
  std::deque<AppActivation> appActivationTimeline_;  // oldest first
  std::optional<Date> commandTriggerTimestamp_;
  Connection activations_;
};

}  // namespace quillmark
