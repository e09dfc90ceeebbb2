#pragma once

#include "execution/InvocationSource.h"

namespace quillmark {

/// The command menu, as the service that opens it sees it.
class CommandPanel {
 public:
  CommandPanel() = default;
  CommandPanel(const CommandPanel&) = delete;
  CommandPanel& operator=(const CommandPanel&) = delete;
  virtual ~CommandPanel() = default;

  virtual void setSource(InvocationSource source) = 0;
  /// Opens a closed menu and closes an open one.
  virtual void togglePanel() = 0;
};

}  // namespace quillmark
