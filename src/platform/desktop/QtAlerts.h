#pragma once

#include <memory>
#include <set>
#include <vector>

#include "platform/Alerts.h"
#include "platform/desktop/QtPanelWindow.h"

namespace quillmark {

/// Alerts as windows of their own. Several can stand at a time; presenting one never waits for the user.
class QtAlerts : public Alerts {
 public:
  /// One of the panels that has the keyboard when an alert comes gets it back afterwards.
  QtAlerts(WindowHints& hints, std::vector<QtPanelWindow*> panels);
  /// Takes down what still stands, without calling back.
  ~QtAlerts() override;

  void present(const Alert& alert, Closed closed) override;

 private:
  class Window;

  WindowHints& hints_;
  std::vector<QtPanelWindow*> panels_;
  std::set<std::unique_ptr<Window>> windows_;
};

}  // namespace quillmark
