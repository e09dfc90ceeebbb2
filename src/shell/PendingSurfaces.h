#pragma once

#include "execution/CommandPanel.h"
#include "execution/ReviewSession.h"

namespace quillmark {

/// Stands where the review panel will be: a run that wants a review ends here with a log line.
class PendingReviewSession : public ReviewSession {
 public:
  void setCommand(const std::optional<Command>& command) override;
  void open(const std::string& text, const std::string& initialText) override;
  void execute(const Command& command, const std::string& text) override;
};

/// Stands where the command menu will be.
class PendingCommandPanel : public CommandPanel {
 public:
  void setSource(InvocationSource source) override;
  void togglePanel() override;
};

}  // namespace quillmark
