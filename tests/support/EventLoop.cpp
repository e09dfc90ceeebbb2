#include "support/EventLoop.h"

#include <algorithm>

#include <poll.h>

namespace quillmark {

using namespace std::chrono_literals;

void EventLoop::turn(std::chrono::milliseconds atMost) {
  runReady();
  for (const auto& watch : watches_) {
    watch.drain();
  }
  auto wait = atMost;
  if (const auto due = nextDue()) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(*due - instant());
    wait = std::clamp(left, 0ms, atMost);
  }
  std::vector<pollfd> descriptors;
  for (const auto& watch : watches_) {
    descriptors.push_back({watch.descriptor, POLLIN, 0});
  }
  if (poll(descriptors.data(), descriptors.size(), static_cast<int>(wait.count())) > 0) {
    ++wakeUps_;
    for (std::size_t i = 0; i < descriptors.size(); ++i) {
      if (descriptors[i].revents != 0) {
        watches_[i].drain();
      }
    }
  }
  runReady();
}

bool EventLoop::runUntil(const std::function<bool()>& condition, std::chrono::milliseconds deadline) {
  const auto end = instant() + deadline;
  while (!condition()) {
    if (instant() > end) {
      return false;
    }
    turn(3ms);
  }
  return true;
}

void EventLoop::runFor(std::chrono::milliseconds time) {
  const auto end = instant() + time;
  for (auto left = time; left > 0ms; left = std::chrono::duration_cast<std::chrono::milliseconds>(end - instant())) {
    turn(left);
  }
}

}  // namespace quillmark
