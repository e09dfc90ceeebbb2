#include "shell/PendingSurfaces.h"

#include "base/Log.h"

namespace quillmark {

void PendingReviewSession::setCommand(const std::optional<Command>& /*command*/) {}

void PendingReviewSession::open(const std::string& /*text*/, const std::string& /*initialText*/) {}

void PendingReviewSession::execute(const Command& command, const std::string& /*text*/) {
  log("The review panel is not part of this version yet, so the run of " + command.name +
      " ends here. Another default behavior, such as replaceSelection, works.");
}

void PendingCommandPanel::setSource(InvocationSource /*source*/) {}

void PendingCommandPanel::togglePanel() { log("The command menu is not part of this version yet"); }

}  // namespace quillmark
