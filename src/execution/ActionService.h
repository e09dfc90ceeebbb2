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

/// Runs a command from its trigger to its applied answer. Whatever started it, every command comes through here: the
/// selection is captured, and then either the review session takes over (behaviour `showReview`), or the direct path
/// asks the provider once and applies the answer. Nothing is returned or thrown: what goes wrong is an alert or
/// silence. Main thread only.
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

  /// Clears an `isLoading` that a process left behind which did not end well.
  explicit ActionService(const Collaborators& collaborators);

  Setting<ActionBehavior> defaultBehavior;  ///< what a command without a behaviour of its own does
  Setting<bool> isLoading;                  ///< a direct run is under way; the tray menu reads the same key

  /// `shouldCopy` says that the selection must be fetched with the copy key; otherwise the text already lies on the
  /// general pasteboard. A direct run under way drops any other run without a word.
  void runCommand(const Command& command, bool shouldCopy);
  void runCommandById(const std::optional<Uuid>& id, bool shouldCopy);
  /// Runs the stored command of the action with the action's parameter; the stored command stays as it is.
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
