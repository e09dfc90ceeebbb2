#pragma once

#include <chrono>
#include <mutex>
#include <optional>
#include <queue>
#include <vector>

#include "platform/MainQueue.h"

namespace quillmark {

/// The ordering of a main queue. A subclass supplies the clock and makes its thread call runReady().
class SerialQueue : public MainQueue {
 public:
  using Instant = std::chrono::steady_clock::time_point;

  void async(Block block) override;
  TimerHandle after(Duration delay, Block block) override;
  TimerHandle every(Duration interval, Block block) override;

  /// Runs every block that is due, in order; returns at once inside a block and while a hold is alive.
  void runReady();

  /// When runReady() next has something to do; nothing while the queue is empty or held.
  std::optional<Instant> nextDue() const;

 protected:
  /// A clock that only goes forward. Any thread.
  virtual Instant instant() const = 0;
  /// nextDue() may be earlier than before. Any thread.
  virtual void wake() = 0;

  void suspend() override;
  void resume() override;

 private:
  struct Entry {
    Instant due;
    std::uint64_t sequence;
    Block block;
    std::shared_ptr<bool> cancelled;  // null for a block that can't be cancelled
    Duration interval;                // zero for a block that runs once
  };
  struct Later {
    bool operator()(const Entry& a, const Entry& b) const {
      return a.due != b.due ? a.due > b.due : a.sequence > b.sequence;
    }
  };

  void push(Entry entry);
  TimerHandle schedule(Duration delay, Duration interval, Block block);
  std::optional<Entry> takeReady();

  mutable std::mutex mutex_;
  std::priority_queue<Entry, std::vector<Entry>, Later> entries_;
  std::uint64_t nextSequence_ = 0;
  int holds_ = 0;         // written by the main thread only; read under the mutex
  bool running_ = false;  // main thread only
};

}  // namespace quillmark
