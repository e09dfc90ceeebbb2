#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QTimer>
#include <chrono>
#include <functional>

namespace quillmark {

/// Runs the event loop until the condition holds; false when it still doesn't after a generous time.
inline bool waitFor(const std::function<bool()>& condition) {
  const QDeadlineTimer deadline(std::chrono::seconds(20));
  QTimer tick;  // conditions about other processes cause no event here
  tick.start(20);
  while (!condition()) {
    if (deadline.hasExpired()) {
      return false;
    }
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }
  return true;
}

}  // namespace quillmark
