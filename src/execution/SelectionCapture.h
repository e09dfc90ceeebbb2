#pragma once

#include <functional>
#include <string>

#include "base/Lifetime.h"
#include "commands/ActionBehavior.h"
#include "execution/KeyboardHelper.h"
#include "platform/MainQueue.h"
#include "platform/Pasteboard.h"

namespace quillmark {

/// Reads the selection of the application in front and writes text back into it, through the general pasteboard and
/// simulated keys. What the user had copied before is gone afterwards.
class SelectionCapture {
 public:
  /// How long an application gets to react to a key or to an activation.
  static constexpr Duration reactionTime = std::chrono::milliseconds(100);

  SelectionCapture(MainQueue& queue, Pasteboard& pasteboard, KeyInjector& injector)
      : queue_(queue), pasteboard_(pasteboard), keyboard_(injector) {}

  /// With `shouldCopy` the pasteboard is emptied and the copy key pressed first; without it the text is already there.
  /// The completion is called with the text, empty when there is none, not before the reaction time has passed.
  void getSelectedText(bool shouldCopy, std::function<void(const std::string&)> completion);

  /// Applies an answer by the behaviour: pastes it, alone or with the selection before or after it, or leaves it on the
  /// pasteboard. `showReview` does nothing.
  void apply(ActionBehavior behavior, const std::string& answer, const std::string& selection);

  /// Puts the text on the pasteboard and presses the paste key after the reaction time.
  void pasteText(std::string text);

 private:
  void writePasteboard(std::string text);

  MainQueue& queue_;
  Pasteboard& pasteboard_;
  KeyboardHelper keyboard_;
  Lifetime lifetime_;
};

}  // namespace quillmark
