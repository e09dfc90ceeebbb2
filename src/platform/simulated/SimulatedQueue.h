#pragma once

#include "platform/SerialQueue.h"

namespace quillmark {

/// A main queue whose clock only a test moves.
class SimulatedQueue : public SerialQueue {
 public:
  /// Advances the clock and runs what becomes due on the way, each block at its own time.
  void advance(Duration by);
  /// Runs what is due now.
  void settle() { runReady(); }

  Date now() const override;
  /// Sets the calendar clock, forward or back; delays are not affected.
  void setNow(Date date);

 protected:
  Instant instant() const override { return instant_; }
  void wake() override {}

 private:
  Instant instant_{};
  Date start_{std::chrono::seconds{1'772'355'600}};  ///< the calendar time at the start; a morning in 2026
};

}  // namespace quillmark
