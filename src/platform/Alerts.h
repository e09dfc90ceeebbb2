#pragma once

#include <functional>
#include <string>

namespace quillmark {

enum class AlertStyle { warning, informational };

struct Alert {
  AlertStyle style = AlertStyle::warning;
  std::string title;
  std::string message;  ///< may be empty
  std::string button;   ///< label of the one button
  friend bool operator==(const Alert&, const Alert&) = default;
};

/// Shows alerts. Main thread only.
class Alerts {
 public:
  Alerts() = default;
  Alerts(const Alerts&) = delete;
  Alerts& operator=(const Alerts&) = delete;
  virtual ~Alerts() = default;

  /// Brings this application to the front and shows the alert; `closed` runs once the user has closed it.
  virtual void present(const Alert& alert, std::function<void()> closed) = 0;
};

}  // namespace quillmark
