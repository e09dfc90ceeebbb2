#include <QEventLoop>
#include <QTimer>
#include <thread>

#include <gtest/gtest.h>

#include "desktop_qt/WaitFor.h"
#include "platform/desktop/QtMainQueue.h"

namespace quillmark {
namespace {

using namespace std::chrono_literals;

TEST(QtMainQueue, blocksOfManyThreadsAllRunOnTheMainOneAndKeepTheirOrder) {
  QtMainQueue queue;
  constexpr int threads = 4;
  constexpr int blocks = 500;
  const auto mainThread = std::this_thread::get_id();
  std::array<std::vector<int>, threads> seen;
  std::vector<std::thread> senders;
  for (int t = 0; t < threads; ++t) {
    senders.emplace_back([&, t] {
      for (int i = 0; i < blocks; ++i) {
        queue.async([&, t, i] {
          EXPECT_EQ(std::this_thread::get_id(), mainThread);
          seen[t].push_back(i);
        });
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
