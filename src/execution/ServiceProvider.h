#pragma once

#include <optional>
#include <string>

#include "execution/CommandPanel.h"
#include "platform/AlertHandler.h"
#include "platform/MainQueue.h"

namespace quillmark {

/// Receives the Service message of another program. Main thread only.
class ServiceProvider {
 public:
  ServiceProvider(CommandPanel& commandPanel, AlertHandler& alertHandler, MainQueue& mainQueue)
      : commandPanel_(commandPanel), alertHandler_(alertHandler), mainQueue_(mainQueue) {}

  /// Opens the command menu. The message must carry a text, which is otherwise ignored: a command from the menu takes
  /// what is on the general pasteboard.
  void service(const std::optional<std::string>& text);

 private:
  CommandPanel& commandPanel_;
  AlertHandler& alertHandler_;
  MainQueue& mainQueue_;
};

}  // namespace quillmark
