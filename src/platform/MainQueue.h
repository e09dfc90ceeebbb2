#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace quillmark {

using Duration = std::chrono::nanoseconds;
/// A moment of the system's calendar clock.
using Date = std::chrono::system_clock::time_point;

/// "2026-03-01 09:30:00 +0000", for log lines.
std::string describe(Date date);

/// Cancels a delayed block. Destroying the handle does not. Main thread only.
class TimerHandle {
 public:
  TimerHandle() = default;
  explicit TimerHandle(std::shared_ptr<bool> cancelled) : cancelled_(std::move(cancelled)) {}
  void cancel() {
    if (cancelled_) {
      *cancelled_ = true;
    }
    cancelled_.reset();
  }
  explicit operator bool() const { return cancelled_ != nullptr; }

 private:
  std::shared_ptr<bool> cancelled_;
};

/// The one queue on which everything is decided. Blocks run one after another on the main thread, in the order in which
/// they become due; a block never runs inside another one.
class MainQueue {
 public:
  using Block = std::function<void()>;

  MainQueue() = default;
  MainQueue(const MainQueue&) = delete;
  MainQueue& operator=(const MainQueue&) = delete;
  virtual ~MainQueue() = default;

  /// Runs the block as soon as those before it have run. The one operation that any thread may call.
  virtual void async(Block block) = 0;
  virtual TimerHandle after(Duration delay, Block block) = 0;
  /// Runs the block repeatedly, the first time after one interval. Late ticks are not made up for.
  virtual TimerHandle every(Duration interval, Block block) = 0;

  /// While a hold is alive no block runs: those that become due wait until it is released. This is how something modal
  /// keeps its place in the queue without a loop of its own.
  class Hold {
   public:
    explicit Hold(MainQueue& queue) : queue_(queue) { queue_.suspend(); }
    Hold(const Hold&) = delete;
    Hold& operator=(const Hold&) = delete;
    ~Hold() { queue_.resume(); }

   private:
    MainQueue& queue_;
  };

  virtual Date now() const = 0;

 protected:
  virtual void suspend() = 0;
  virtual void resume() = 0;
};

/// A callback with one argument that may be called on any thread: each call runs the operation in the queue.
template <class Operation>
auto onMainQueue(MainQueue& queue, Operation operation) {
  return [&queue, operation = std::move(operation)](auto value) {
    queue.async([operation, value = std::move(value)]() mutable { operation(std::move(value)); });
  };
}

}  // namespace quillmark
