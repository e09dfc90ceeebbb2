#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "panels/review/BackgroundComparison.h"
#include "platform/simulated/SimulatedBackgroundQueue.h"
#include "platform/simulated/SimulatedQueue.h"

namespace quillmark {
namespace {

using testing::ElementsAre;
using testing::Optional;

int calculations;

std::vector<std::string> rowsOf(const std::string& original, const std::string& improved) {
  ++calculations;
  return {original, improved};
}

struct BackgroundComparisonTest : testing::Test {
  BackgroundComparisonTest() { calculations = 0; }

  SimulatedQueue queue;
  SimulatedBackgroundQueue background;
  BackgroundComparison<std::string> comparison{background, queue, rowsOf};
};

TEST_F(BackgroundComparisonTest, hasNoRowsWhileItComputesAndComputesOnce) {
  for (int i = 0; i < 2; ++i) {
    comparison.compare("a", "b");
    background.run();
    EXPECT_EQ(comparison.rows()->has_value(), i == 1) << "the result comes through the main queue";
    queue.settle();
    EXPECT_THAT(comparison.rows().get(), Optional(ElementsAre("a", "b")));
  }
  EXPECT_EQ(calculations, 1);
  comparison.compare("a", "c");
  EXPECT_EQ(comparison.rows().get(), std::nullopt);
}

TEST_F(BackgroundComparisonTest, dropsALateResult) {
  comparison.compare("a", "computed");
  background.run();
  comparison.compare("a", "not begun");
  comparison.compare("a", "new");
  queue.settle();
  EXPECT_EQ(comparison.rows().get(), std::nullopt);
  std::swap(background.waiting.front(), background.waiting.back());
  background.run();
  queue.settle();
  EXPECT_THAT(comparison.rows().get(), Optional(ElementsAre("a", "new")));
  EXPECT_EQ(calculations, 2) << "what nobody waits for is not begun";
}

}  // namespace
}  // namespace quillmark
