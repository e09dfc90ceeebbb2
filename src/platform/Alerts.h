#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace quillmark {

enum class AlertStyle { warning, informational };

struct Alert {
  AlertStyle style = AlertStyle::warning;
  std::string title;
  std::string message;               ///< may be empty
  std::vector<std::string> buttons;  ///< labels; the first is the default, the last is what Escape presses
  friend bool operator==(const Alert&, const Alert&) = default;
};

/// Shows alerts. Main thread only.
class Alerts {
 public:
  Alerts() = default;
  Alerts(const Alerts&) = delete;
  Alerts& operator=(const Alerts&) = delete;
  virtual ~Alerts() = default;

  /// Called with the index of the button that closed an alert.
  using Closed = std::function<void(std::size_t button)>;

  /// Brings this application to the front and shows the alert; `closed` runs once the user has closed it.
  virtual void present(const Alert& alert, Closed closed) = 0;
};

}  // namespace quillmark
