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
  constexpr std::chrono::seconds start{1'772'355'600};  // some morning in 2026
  return Date{start} + std::chrono::duration_cast<Date::duration>(instant_.time_since_epoch());
}

}  // namespace quillmark
