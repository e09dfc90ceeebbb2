#include "platform/AlertHandler.h"

#include <memory>

#include "base/Localization.h"

namespace quillmark {

AlertKind AlertKind::issue(const std::string& name, std::string message) {
  return {AlertStyle::warning, tr("{} Issue", name), std::move(message)};
}

AlertKind AlertKind::unknownError(std::string message) {
  return {AlertStyle::warning, tr("Unknown Error"), std::move(message)};
}

AlertKind AlertKind::notice(std::string title, std::string message) {
  return {AlertStyle::informational, std::move(title), std::move(message)};
}

void AlertHandler::show(AlertKind kind, Alerts::Closed closed) {
  if (kind.buttons.empty()) {
    kind.buttons = {tr("Close")};
  }
  queue_.async([this, alert = Alert{kind.style, kind.title, kind.message, kind.buttons}, closed = std::move(closed)] {
    const auto hold = std::make_shared<MainQueue::Hold>(queue_);
    alerts_.present(alert, [held = hold, closed](std::size_t button) mutable {
      if (closed) {
        closed(button);
      }
      held.reset();
    });
  });
}

}  // namespace quillmark
