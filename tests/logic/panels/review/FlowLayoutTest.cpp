#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "panels/review/FlowLayout.h"

namespace quillmark {
namespace {

using testing::ElementsAre;

TEST(FlowLayout, fillsRowsAndBreaksThem) {
  const FlowLayout flow{2};
  const auto measure = flow.measure({{4, 3}, {4, 5}, {1, 1}, {20, 2}, {0, 9}, {10, 1}}, 10.0);
  // The second one ends exactly at the edge; the fourth is too wide for any row.
  EXPECT_THAT(measure.positions,
              ElementsAre(Point{0, 0}, Point{6, 0}, Point{0, 7}, Point{0, 10}, Point{0, 14}, Point{0, 25}));
  EXPECT_EQ(measure.size, (Size{10, 26}));
}

TEST(FlowLayout, measuresWhatHasNoRoomOrNoWidth) {
  EXPECT_EQ(FlowLayout{}.measure({}, 70.0).size, (Size{70, 0}));
  const auto unknown = FlowLayout{3}.measure({{30, 2}, {6, 1}, {4, 1}, {0, 3}, {1, 1}}, std::nullopt);
  EXPECT_THAT(unknown.positions, ElementsAre(Point{0, 0}, Point{0, 5}, Point{0, 9}, Point{7, 9}, Point{0, 15}));
  EXPECT_EQ(unknown.size, (Size{10, 16}));
}

}  // namespace
}  // namespace quillmark
