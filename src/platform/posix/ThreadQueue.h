#pragma once

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

#include "platform/BackgroundQueue.h"

namespace quillmark {

/// One thread, which starts with the first block and runs them in order.
class ThreadQueue final : public BackgroundQueue {
 public:
  ThreadQueue() = default;
  ~ThreadQueue() override { stop(); }

  void async(Block block) override;
  /// Waits for the running block and drops the others, later ones included.
  void stop();

 private:
  void run();

  std::mutex mutex_;
  std::condition_variable woken_;
  std::deque<Block> waiting_;
  bool ending_ = false;
  std::thread worker_;  // not started before the first block
};

}  // namespace quillmark
