#include "shell/PendingSurfaces.h"

#include "base/Log.h"

namespace quillmark {

void PendingCommandPanel::setSource(InvocationSource /*source*/) {}

void PendingCommandPanel::togglePanel() { log("The command menu is not part of this version yet"); }

}  // namespace quillmark
