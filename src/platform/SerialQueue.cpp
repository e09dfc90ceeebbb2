#include "platform/SerialQueue.h"

#include <utility>

namespace quillmark {

void SerialQueue::async(Block block) { push({instant(), 0, std::move(block), nullptr, Duration::zero()}); }

TimerHandle SerialQueue::after(Duration delay, Block block) {
  return schedule(delay, Duration::zero(), std::move(block));
}

TimerHandle SerialQueue::every(Duration interval, Block block) {
  return schedule(interval, interval, std::move(block));
}

TimerHandle SerialQueue::schedule(Duration delay, Duration interval, Block block) {
  auto cancelled = std::make_shared<bool>(false);
  push({instant() + delay, 0, std::move(block), cancelled, interval});
  return TimerHandle(std::move(cancelled));
}

void SerialQueue::push(Entry entry) {
  {
    const std::lock_guard lock(mutex_);
    entry.sequence = nextSequence_++;
    entries_.push(std::move(entry));
  }
  wake();
}

std::optional<SerialQueue::Entry> SerialQueue::takeReady() {
  const std::lock_guard lock(mutex_);
  if (holds_ > 0 || entries_.empty() || entries_.top().due > instant()) {
    return std::nullopt;
  }
  // top() is read-only; the entry is popped before it could be compared again.
  Entry entry = std::move(const_cast<Entry&>(entries_.top()));
  entries_.pop();
  return entry;
}

void SerialQueue::runReady() {
  if (running_) {
    return;
  }
  running_ = true;
  while (auto entry = takeReady()) {
    if (entry->cancelled && *entry->cancelled) {
      continue;
    }
    entry->block();
    if (entry->interval > Duration::zero() && !*entry->cancelled) {
      entry->due = instant() + entry->interval;
      push(std::move(*entry));
    }
  }
  running_ = false;
}

std::optional<SerialQueue::Instant> SerialQueue::nextDue() const {
  const std::lock_guard lock(mutex_);
  if (holds_ > 0 || entries_.empty()) {
    return std::nullopt;
  }
  return entries_.top().due;
}

void SerialQueue::suspend() {
  const std::lock_guard lock(mutex_);
  ++holds_;
}

void SerialQueue::resume() {
  {
    const std::lock_guard lock(mutex_);
    --holds_;
  }
  wake();
}

}  // namespace quillmark
