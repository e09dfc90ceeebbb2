#pragma once

#include <functional>

namespace quillmark {

/// Runs what would keep the main thread too long. Blocks are pure functions that throw nothing, share nothing that
/// changes, and hand their result over through MainQueue::async. They may run at once or later, in any order, and need
/// not run at all once the queue goes.
class BackgroundQueue {
 public:
  using Block = std::function<void()>;

  BackgroundQueue() = default;
  BackgroundQueue(const BackgroundQueue&) = delete;
  BackgroundQueue& operator=(const BackgroundQueue&) = delete;
  virtual ~BackgroundQueue() = default;

  virtual void async(Block block) = 0;
};

}  // namespace quillmark
