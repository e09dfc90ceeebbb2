#include <QEventLoop>
#include <QTimer>
#include <thread>

#include <gtest/gtest.h>

#include "desktop_qt/WaitFor.h"
#include "platform/desktop/QtMainQueue.h"

namespace quillmark {
namespace {

using namespace std::chrono_literals;

TEST(QtMainQueue, aBlockFromAnotherThreadRunsOnTheMainThread) {
  QtMainQueue queue;
  std::thread::id ranOn;
  std::thread([&] { queue.async([&] { ranOn = std::this_thread::get_id(); }); }).join();
  EXPECT_EQ(ranOn, std::thread::id()) << "nothing runs before the event loop does";
  ASSERT_TRUE(waitFor([&] { return ranOn != std::thread::id(); }));
  EXPECT_EQ(ranOn, std::this_thread::get_id());
}

TEST(QtMainQueue, blocksOfManyThreadsAllArriveAndKeepTheOrderOfTheirThread) {
  QtMainQueue queue;
  constexpr int threads = 4;
  constexpr int blocks = 500;
  std::array<std::vector<int>, threads> seen;
  std::vector<std::thread> senders;
  for (int t = 0; t < threads; ++t) {
    senders.emplace_back([&, t] {
      for (int i = 0; i < blocks; ++i) {
        queue.async([&seen, t, i] { seen[t].push_back(i); });
      }
    });
  }
  EXPECT_TRUE(waitFor([&] { return std::ranges::all_of(seen, [](const auto& of) { return of.size() == blocks; }); }));
  for (std::thread& sender : senders) {
    sender.join();
  }
  for (const auto& of : seen) {
    EXPECT_TRUE(std::ranges::is_sorted(of));
  }
}

TEST(QtMainQueue, aDelayedBlockRunsWhenItsTimeHasComeAndNotBefore) {
  QtMainQueue queue;
  const auto start = std::chrono::steady_clock::now();
  std::optional<std::chrono::steady_clock::duration> took;
  queue.after(30ms, [&] { took = std::chrono::steady_clock::now() - start; });
  ASSERT_TRUE(waitFor([&] { return took.has_value(); }));
  EXPECT_GE(*took, 30ms);
}

TEST(QtMainQueue, sleepsWithoutATimerWhileNothingIsDue) {
  QtMainQueue queue;
  EXPECT_FALSE(queue.timerActive());
  bool ran = false;
  TimerHandle later = queue.after(1h, [] {});
  queue.after(5ms, [&] { ran = true; });
  ASSERT_TRUE(waitFor([&] { return ran; }));
  EXPECT_TRUE(queue.timerActive()) << "one block is still to come";

  auto hold = std::make_unique<MainQueue::Hold>(queue);
  bool held = true;
  queue.async([&] { held = false; });
  QCoreApplication::processEvents();
  EXPECT_FALSE(queue.timerActive()) << "a held queue has nothing to wake up for";
  hold.reset();
  EXPECT_TRUE(waitFor([&] { return !held; }));
}

TEST(QtMainQueue, anEventLoopInsideABlockRunsNoOtherBlockAndDoesNotSpin) {
  QtMainQueue queue;
  std::string trail;
  queue.async([&] {
    trail += '(';
    queue.async([&] { trail += 'b'; });
    QEventLoop inner;
    QTimer::singleShot(20, &inner, [&] {
      EXPECT_FALSE(queue.timerActive());
      inner.quit();
    });
    inner.exec();
    trail += ')';
  });
  ASSERT_TRUE(waitFor([&] { return trail.ends_with('b'); }));
  EXPECT_EQ(trail, "()b");
}

}  // namespace
}  // namespace quillmark
