#pragma once

#include <optional>
#include <string>

#include "base/Lifetime.h"
#include "commands/CustomPromptStore.h"
#include "execution/ActiveApplicationTracker.h"
#include "execution/LoadingPanel.h"
#include "execution/PreparedRun.h"
#include "execution/ReviewSession.h"
#include "execution/SelectionCapture.h"
#include "execution/UsageRecorder.h"
#include "platform/AlertHandler.h"
#include "platform/Permissions.h"
#include "platform/UserDefaults.h"

namespace quillmark {

/// Runs a command from its trigger to its applied answer. Every command comes through here, whatever started it: the
/// selection is captured, and then either the review session takes over (behaviour `showReview`), or the direct path
/// sends one request and applies the answer. Nothing is returned or thrown: a failure is an alert or silence. Main
/// thread only.
class ActionService {
 public:
  struct Collaborators {
    MainQueue& queue;
    UserDefaults& defaults;
    Permissions& permissions;
    AlertHandler& alerts;
    SelectionCapture& capture;
    ActiveApplicationTracker& tracker;
    CustomPromptStore& promptStore;
    RunSources runSources;
    UsageRecorder& statistics;
    ReviewSession& reviewSession;
    LoadingPanel* loadingPanel;  ///< may be null
  };

  /// Clears an `isLoading` left set by a process that crashed.
  explicit ActionService(const Collaborators& collaborators);

  Setting<ActionBehavior> defaultBehavior;  ///< for commands without a behaviour of their own
  Setting<bool> isLoading;                  ///< a direct run is in progress; the tray menu reads the same key

  /// `shouldCopy`: the selection must be fetched with the copy key; otherwise the text is already on the general
  /// pasteboard. While a direct run is in progress any other run is silently dropped.
  void runCommand(const Command& command, bool shouldCopy);
  void runCommandById(const std::optional<Uuid>& id, bool shouldCopy);
  /// Runs the stored command of the action with the action's parameter; the stored command is not changed.
  void runAction(const UserAction& action, bool shouldCopy);
  void runCommandBySlug(const std::string& slug, bool shouldCopy);

  const std::optional<Command>& lastRunCommand() const { return lastRunCommand_; }

 private:
  void handleDirectAction(const std::string& text, const Command& command, ActionBehavior behavior);
  void handleReviewAction(const std::string& text, const Command& command);
  void hideLoading();

  Collaborators collaborators_;
  std::optional<Command> lastRunCommand_;
  Lifetime lifetime_;
};

}  // namespace quillmark
