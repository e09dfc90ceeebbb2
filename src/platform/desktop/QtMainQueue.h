#pragma once

#include <QBasicTimer>
#include <QObject>
#include <atomic>

#include "platform/SerialQueue.h"

namespace quillmark {

/// The main queue on the toolkit's event loop. Needs a QCoreApplication and lives on its thread. While nothing is due
/// it has no timer, so the program sleeps.
class QtMainQueue : public QObject, public SerialQueue {
 public:
  Date now() const override;
  bool timerActive() const { return timer_.isActive(); }

 protected:
  Instant instant() const override;
  void wake() override;

  bool event(QEvent* event) override;

 private:
  void runAndRearm();

  QBasicTimer timer_;
  std::atomic<bool> wakePosted_ = false;
  bool inside_ = false;
};

}  // namespace quillmark
