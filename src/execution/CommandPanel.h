#pragma once

#include "execution/InvocationSource.h"

namespace quillmark {

/// The command menu as seen by the triggers that open it.
class CommandPanel {
 public:
  CommandPanel() = default;
  CommandPanel(const CommandPanel&) = delete;
  CommandPanel& operator=(const CommandPanel&) = delete;
  virtual ~CommandPanel() = default;

  /// Opens a closed menu and closes an open one.
  virtual void togglePanel(InvocationSource source) = 0;
};

}  // namespace quillmark
