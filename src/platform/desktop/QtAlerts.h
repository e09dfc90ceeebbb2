#pragma once

#include <memory>
#include <set>
#include <vector>

#include "platform/Alerts.h"
#include "platform/desktop/QtPanelWindow.h"

namespace quillmark {

/// Alerts as windows of their own. Several can be open at a time; presenting one never blocks.
class QtAlerts : public Alerts {
 public:
  /// If one of the panels has the keyboard when an alert is shown, it gets it back afterwards.
  QtAlerts(WindowHints& hints, std::vector<QtPanelWindow*> panels);
  /// Closes the open alerts without calling back.
  ~QtAlerts() override;

  void present(const Alert& alert, Closed closed) override;

 private:
  class Window;

  WindowHints& hints_;
  std::vector<QtPanelWindow*> panels_;
  std::set<std::unique_ptr<Window>> windows_;
};

}  // namespace quillmark
