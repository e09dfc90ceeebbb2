#pragma once

#include <deque>
#include <utility>

#include "platform/BackgroundQueue.h"

namespace quillmark {

/// Keeps what it is given until the test runs it, on the test's own thread.
class SimulatedBackgroundQueue : public BackgroundQueue {
 public:
  void async(Block block) override { waiting.push_back(std::move(block)); }

  /// Runs what waits, in order.
  void run() {
    for (auto blocks = std::exchange(waiting, {}); const Block& block : blocks) {
      block();
    }
  }

  std::deque<Block> waiting;
};

}  // namespace quillmark
