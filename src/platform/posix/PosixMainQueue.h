#pragma once

#include <condition_variable>
#include <mutex>

#include "platform/SerialQueue.h"

namespace quillmark {

/// The main queue of a program without a desktop, on the system's clocks. The thread that calls run() is the main
/// thread; between blocks it sleeps until the next one is due.
class PosixMainQueue final : public SerialQueue {
 public:
  /// Runs blocks until stop() is called. Can be called again.
  void run();
  /// Makes run() return; blocks already due may still run first. Any thread.
  void stop();

  Date now() const override;

 protected:
  Instant instant() const override;
  void wake() override;

 private:
  std::mutex mutex_;
  std::condition_variable woken_;
  bool wakePending_ = false;
  bool stopPending_ = false;
};

}  // namespace quillmark
