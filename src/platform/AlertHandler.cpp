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

void AlertHandler::show(AlertKind kind) {
  queue_.async([this, kind = std::move(kind)] {
    const auto hold = std::make_shared<MainQueue::Hold>(queue_);
    alerts_.present({kind.style, kind.title, kind.message, tr("Close")}, [held = hold]() mutable { held.reset(); });
  });
}

}  // namespace quillmark
