#include "platform/desktop/QtMainQueue.h"

#include <QCoreApplication>
#include <QEvent>
#include <limits>

namespace quillmark {

namespace {

const auto wakeEvent = static_cast<QEvent::Type>(QEvent::registerEventType());

}  // namespace

Date QtMainQueue::now() const { return std::chrono::system_clock::now(); }

SerialQueue::Instant QtMainQueue::instant() const { return std::chrono::steady_clock::now(); }

void QtMainQueue::wake() {
  if (!wakePosted_.exchange(true)) {
    QCoreApplication::postEvent(this, new QEvent(wakeEvent), Qt::HighEventPriority);
  }
}

bool QtMainQueue::event(QEvent* event) {
  if (event->type() == wakeEvent) {
    // Before the blocks run: what is queued meanwhile must wake the loop again.
    wakePosted_ = false;
    runAndRearm();
    return true;
  }
  if (event->type() == QEvent::Timer) {
    runAndRearm();
    return true;
  }
  return QObject::event(event);
}

void QtMainQueue::runAndRearm() {
  timer_.stop();
  if (inside_) {
    return;  // an event loop runs inside a block: what is due waits for that block, and a timer would only spin
  }
  inside_ = true;
  runReady();
  inside_ = false;
  if (const auto due = nextDue()) {
    // Rounded up: a timer that fires early would find nothing to run.
    const auto delay = std::chrono::ceil<std::chrono::milliseconds>(*due - instant()).count();
    timer_.start(static_cast<int>(std::clamp<std::int64_t>(delay, 0, std::numeric_limits<int>::max())),
                 Qt::PreciseTimer, this);
  }
}

}  // namespace quillmark
