#pragma once

#include <deque>
#include <utility>

#include "platform/BackgroundQueue.h"

namespace quillmark {

/// Keeps its blocks until the test runs them, on the test's own thread.
class SimulatedBackgroundQueue : public BackgroundQueue {
 public:
  void async(Block block) override { waiting.push_back(std::move(block)); }

  /// Runs the waiting blocks in order.
  void run() {
    for (auto blocks = std::exchange(waiting, {}); const Block& block : blocks) {
      block();
    }
  }

  std::deque<Block> waiting;
};

}  // namespace quillmark
