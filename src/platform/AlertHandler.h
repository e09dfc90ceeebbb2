#pragma once

#include <string>
#include <vector>

#include "platform/Alerts.h"
#include "platform/MainQueue.h"

namespace quillmark {

/// What went wrong, or what else the user must know, before it is laid out as an alert.
struct AlertKind {
  /// "<name> Issue".
  static AlertKind issue(const std::string& name, std::string message);
  /// "Unknown Error".
  static AlertKind unknownError(std::string message);
  static AlertKind notice(std::string title, std::string message);

  AlertStyle style;
  std::string title;
  std::string message;
  std::vector<std::string> buttons = {};  ///< none: "Close"
};

/// The only way to show an ordinary alert. An alert takes a place in the main queue: it is shown when the blocks before
/// it have run, and those after it wait until the user has closed it.
class AlertHandler {
 public:
  AlertHandler(MainQueue& queue, Alerts& alerts) : queue_(queue), alerts_(alerts) {}

  /// Returns at once; `closed` runs on the main thread when the user has closed the alert. Any thread.
  void show(AlertKind kind, Alerts::Closed closed = {});

 private:
  MainQueue& queue_;
  Alerts& alerts_;
};

}  // namespace quillmark
