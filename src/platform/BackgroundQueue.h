#pragma once

#include <functional>

namespace quillmark {

/// Runs what would block the main thread for too long. Blocks are pure functions that throw nothing, share no mutable
/// state, and hand their result over through MainQueue::async. They may run at once or later, in any order, and may be
/// dropped when the queue is destroyed.
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
