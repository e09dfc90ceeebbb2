#pragma once

#include "execution/CommandPanel.h"

namespace quillmark {

/// Stands where the command menu will be.
class PendingCommandPanel : public CommandPanel {
 public:
  void setSource(InvocationSource source) override;
  void togglePanel() override;
};

}  // namespace quillmark
