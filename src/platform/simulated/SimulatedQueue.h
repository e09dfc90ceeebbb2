#pragma once

#include "platform/SerialQueue.h"

namespace quillmark {

/// A main queue whose clock only a test moves.
class SimulatedQueue : public SerialQueue {
 public:
  /// Lets time pass and runs what becomes due on the way, each block at its own moment.
  void advance(Duration by);
  /// Runs what is due now.
  void settle() { runReady(); }

  Date now() const override;
  /// Sets the calendar, forward or back; what waits for a delay is not touched.
  void setNow(Date date);

 protected:
  Instant instant() const override { return instant_; }
  void wake() override {}

 private:
  Instant instant_{};
  Date start_{std::chrono::seconds{1'772'355'600}};  ///< what the calendar says at the first instant; a morning in 2026
};

}  // namespace quillmark
