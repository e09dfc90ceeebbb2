#include "platform/posix/PosixMainQueue.h"

#include <utility>

namespace quillmark {

void PosixMainQueue::run() {
  for (;;) {
    runReady();
    const auto due = nextDue();
    std::unique_lock lock(mutex_);
    const auto isWoken = [this] { return wakePending_ || stopPending_; };
    if (due) {
      woken_.wait_until(lock, *due, isWoken);
    } else {
      woken_.wait(lock, isWoken);
    }
    wakePending_ = false;
    if (std::exchange(stopPending_, false)) {
      return;
    }
  }
}

void PosixMainQueue::stop() {
  {
    const std::lock_guard lock(mutex_);
    stopPending_ = true;
  }
  woken_.notify_one();
}

void PosixMainQueue::wake() {
  {
    const std::lock_guard lock(mutex_);
    wakePending_ = true;
  }
  woken_.notify_one();
}

Date PosixMainQueue::now() const { return std::chrono::system_clock::now(); }

SerialQueue::Instant PosixMainQueue::instant() const { return std::chrono::steady_clock::now(); }

}  // namespace quillmark
