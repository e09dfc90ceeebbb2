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

 protected:
  Instant instant() const override { return instant_; }
  void wake() override {}

 private:
  Instant instant_{};
};

}  // namespace quillmark
