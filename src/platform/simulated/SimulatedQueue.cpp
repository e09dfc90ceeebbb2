#include "platform/simulated/SimulatedQueue.h"

namespace quillmark {

void SimulatedQueue::advance(Duration by) {
  const Instant end = instant_ + by;
  runReady();
  for (auto due = nextDue(); due && *due <= end; due = nextDue()) {
    instant_ = std::max(instant_, *due);
    runReady();
  }
  instant_ = end;
}

Date SimulatedQueue::now() const {
  return start_ + std::chrono::duration_cast<Date::duration>(instant_.time_since_epoch());
}

void SimulatedQueue::setNow(Date date) { start_ += date - now(); }

}  // namespace quillmark
