#include "platform/posix/ThreadQueue.h"

#include <utility>

namespace quillmark {

void ThreadQueue::stop() {
  std::deque<Block> dropped;
  {
    const std::lock_guard lock(mutex_);
    ending_ = true;
    dropped.swap(waiting_);
  }
  dropped.clear();
  woken_.notify_one();
  if (worker_.joinable()) {
    worker_.join();
  }
}

void ThreadQueue::async(Block block) {
  {
    const std::lock_guard lock(mutex_);
    if (ending_) {
      return;
    }
    waiting_.push_back(std::move(block));
    if (!worker_.joinable()) {
      worker_ = std::thread([this] { run(); });
    }
  }
  woken_.notify_one();
}

void ThreadQueue::run() {
  std::unique_lock lock(mutex_);
  for (;;) {
    woken_.wait(lock, [this] { return ending_ || !waiting_.empty(); });
    if (ending_) {
      return;
    }
    Block block = std::move(waiting_.front());
    waiting_.pop_front();
    lock.unlock();
    block();
    block = nullptr;  // releases what it captured before this thread waits
    lock.lock();
  }
}

}  // namespace quillmark
