#pragma once

#include <memory>
#include <set>

#include "platform/Alerts.h"

namespace quillmark {

/// Alerts as windows of their own. Several can stand at a time; presenting one never waits for the user.
class QtAlerts : public Alerts {
 public:
  QtAlerts();
  /// Takes down what still stands, without calling back.
  ~QtAlerts() override;

  void present(const Alert& alert, Closed closed) override;

 private:
  class Window;
  std::set<std::unique_ptr<Window>> windows_;
};

}  // namespace quillmark
