#include <gtest/gtest.h>

#include "platform/simulated/SimulatedQueue.h"

namespace quillmark {
namespace {

using namespace std::chrono_literals;

struct MainQueueOrder : testing::Test {
  SimulatedQueue queue;
  std::string trail;
  MainQueue::Block adds(char letter) {
    return [this, letter] { trail += letter; };
  }
};

TEST_F(MainQueueOrder, blocksRunInTheOrderInWhichTheyBecomeDue) {
  queue.after(20ms, adds('c'));
  queue.after(10ms, adds('b'));
  queue.async(adds('a'));
  queue.settle();
  EXPECT_EQ(trail, "a");
  queue.advance(30ms);
  EXPECT_EQ(trail, "abc");
}

TEST_F(MainQueueOrder, aBlockNeverRunsInsideAnotherOne) {
  queue.async([this] {
    trail += '(';
    queue.async(adds('b'));
    queue.settle();
    trail += ')';
  });
  queue.settle();
  EXPECT_EQ(trail, "()b");
}

TEST_F(MainQueueOrder, aHoldMakesEverythingAfterItWait) {
  std::unique_ptr<MainQueue::Hold> hold;
  queue.async([&] { hold = std::make_unique<MainQueue::Hold>(queue); });
  queue.async(adds('a'));
  queue.after(10ms, adds('b'));
  queue.advance(1s);
  EXPECT_EQ(trail, "");
  EXPECT_FALSE(queue.nextDue().has_value());
  hold.reset();
  queue.settle();
  EXPECT_EQ(trail, "ab");
}

TEST_F(MainQueueOrder, aRepeatingBlockStopsWhenItIsCancelledEvenFromInside) {
  int ticks = 0;
  TimerHandle timer;
  timer = queue.every(50ms, [&] {
    if (++ticks == 3) {
      timer.cancel();
    }
  });
  for (int i = 0; i < 10; ++i) {
    queue.advance(50ms);
  }
  EXPECT_EQ(ticks, 3);
  EXPECT_FALSE(queue.nextDue().has_value()) << "a cancelled timer must not wake the program again";
}

TEST_F(MainQueueOrder, aLateTickIsNotMadeUpFor) {
  int ticks = 0;
  queue.every(50ms, [&] { ++ticks; });
  auto hold = std::make_unique<MainQueue::Hold>(queue);
  queue.advance(1s);
  hold.reset();
  queue.settle();
  EXPECT_EQ(ticks, 1);
}

}  // namespace
}  // namespace quillmark
