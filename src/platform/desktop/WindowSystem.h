#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/HotKeys.h"
#include "platform/KeyInjector.h"
#include "platform/MainQueue.h"
#include "platform/Pasteboard.h"
#include "platform/Permissions.h"
#include "platform/Screens.h"
#include "platform/Workspace.h"
#include "platform/desktop/WindowHints.h"

namespace quillmark {

/// All adapters to the session's window system, as one set: they share a connection and depend on each other.
class WindowSystem {
 public:
  WindowSystem() = default;
  WindowSystem(const WindowSystem&) = delete;
  WindowSystem& operator=(const WindowSystem&) = delete;
  virtual ~WindowSystem() = default;

  virtual Pasteboard& pasteboard() = 0;
  virtual KeyInjector& keyInjector() = 0;
  virtual HotKeys& hotKeys() = 0;
  virtual Workspace& workspace() = 0;
  virtual Screens& screens() = 0;
  virtual Permissions& permissions() = 0;
  virtual WindowHints& windowHints() = 0;

  /// A sentence for the user when the program can't do its work in this session.
  virtual std::optional<std::string> problem() const { return std::nullopt; }
};

/// Detects the session's window system and makes its adapters. Needs the QApplication. `ownIdentifier` is the bundle
/// identifier that the workspace reports for this process.
std::unique_ptr<WindowSystem> openWindowSystem(MainQueue& queue, const std::string& ownIdentifier);

}  // namespace quillmark
