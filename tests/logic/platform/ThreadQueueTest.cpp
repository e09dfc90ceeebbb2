#include <filesystem>
#include <future>
#include <memory>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "platform/posix/ThreadQueue.h"

namespace quillmark {
namespace {

using namespace std::chrono_literals;

std::ptrdiff_t threadsOfThisProcess() {
  const std::filesystem::directory_iterator tasks("/proc/self/task");
  return std::distance(begin(tasks), end(tasks));
}

TEST(ThreadQueue, runsBlocksInOrderOnOneThreadOfItsOwn) {
  const auto before = threadsOfThisProcess();
  ThreadQueue queue;
  EXPECT_EQ(threadsOfThisProcess(), before) << "an idle program needs none";
  std::vector<std::thread::id> threads;
  std::promise<void> done;
  queue.async([&] { threads.push_back(std::this_thread::get_id()); });
  queue.async([&] {
    threads.push_back(std::this_thread::get_id());
    done.set_value();
  });
  done.get_future().wait();
  ASSERT_EQ(threads.size(), 2u);
  EXPECT_EQ(threads[0], threads[1]);
  EXPECT_NE(threads[0], std::this_thread::get_id());
}

TEST(ThreadQueue, finishesWhatHasBegunAndDropsTheRestWhenItStops) {
  std::promise<void> begun, dropped;
  bool finished = false, ranLater = false;
  ThreadQueue queue;
  queue.async([&] {
    begun.set_value();
    EXPECT_EQ(dropped.get_future().wait_for(10s), std::future_status::ready) << "it stops while this block runs";
    finished = true;
  });
  {
    const std::shared_ptr<void> held(nullptr, [&](void*) { dropped.set_value(); });
    queue.async([&ranLater, held] { ranLater = true; });
  }
  begun.get_future().wait();
  queue.stop();
  queue.async([&ranLater] { ranLater = true; });
  EXPECT_TRUE(finished);
  EXPECT_FALSE(ranLater);
}

}  // namespace
}  // namespace quillmark
