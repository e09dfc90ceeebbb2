#pragma once

#include <chrono>
#include <functional>

#include "platform/SerialQueue.h"

namespace quillmark {

/// A main queue on the real clock for tests without a toolkit: waits for descriptors and timers while run.
class EventLoop : public SerialQueue {
 public:
  /// `drain` is called when the descriptor is readable, and each time before the loop sleeps.
  void watch(int descriptor, std::function<void()> drain) { watches_.push_back({descriptor, std::move(drain)}); }

  /// Runs until the condition holds; false after the deadline. The condition is checked after each event, and every few
  /// milliseconds for changes in other programs.
  bool runUntil(const std::function<bool()>& condition, std::chrono::milliseconds deadline = std::chrono::seconds(20));
  void runFor(std::chrono::milliseconds time);

  Date now() const override { return std::chrono::system_clock::now(); }
  /// How often the loop was woken by a descriptor or a timer.
  int wakeUps() const { return wakeUps_; }

 protected:
  Instant instant() const override { return std::chrono::steady_clock::now(); }
  void wake() override {}

 private:
  struct Watch {
    int descriptor;
    std::function<void()> drain;
  };
  void turn(std::chrono::milliseconds atMost);

  std::vector<Watch> watches_;
  int wakeUps_ = 0;
};

}  // namespace quillmark
