#include <gtest/gtest.h>

#include "panels/FloatingPanel.h"
#include "platform/simulated/SimulatedDesktop.h"

namespace quillmark {
namespace {

using enum ReviewWindowPosition;

TEST(Placement, keepsThePanelInsideTheVisibleArea) {
  const Rect visible{{100, 30}, {1800, 1050}};
  const struct {
    const char* name;
    ReviewWindowPosition position;
    Point mouse;
    Size frame;
    std::optional<double> contentWidth;
    Point expected;
  } cases[] = {
      {"in the middle", center, {0, 0}, {600, 350}, 600, {700, 380}},
      {"under the pointer", nearMouse, {900, 500}, {600, 350}, 600, {600, 520}},
      {"without content as if 500 wide", nearMouse, {900, 500}, {600, 350}, std::nullopt, {650, 520}},
      {"at the right edge", nearMouse, {1880, 500}, {600, 350}, 600, {1300, 520}},
      {"at the left edge", nearMouse, {110, 500}, {600, 350}, 600, {100, 520}},
      {"at the bottom it overlaps the pointer", nearMouse, {900, 1070}, {600, 350}, 600, {600, 730}},
      {"above the visible area", nearMouse, {900, 0}, {600, 350}, 600, {600, 30}},
  };
  for (const auto& [name, position, mouse, frame, contentWidth, expected] : cases) {
    EXPECT_EQ(placement(position, mouse, visible, frame, contentWidth), expected) << name;
  }
}

struct FloatingPanelTest : testing::Test {
  SimulatedDesktop desktop;
  SimulatedWindow& window = desktop.menuWindow;
};

TEST_F(FloatingPanelTest, opensOnTheScreenOfThePointer) {
  desktop.screens.all = {{{{0, 0}, {1000, 800}}, {{0, 0}, {1000, 800}}},
                         {{{1000, 0}, {2000, 1000}}, {{1000, 0}, {2000, 900}}}};
  window.size = {600, 300};
  FloatingPanel panel(window, desktop.screens, true);
  const struct {
    std::optional<Point> mouse;
    Point expected;
  } cases[] = {{Point{1000, 10}, {1700, 300}},
               {Point{999, 10}, {200, 250}},
               {Point{5000, 10}, {200, 250}},
               {std::nullopt, {200, 250}}};
  for (const auto& [mouse, expected] : cases) {
    desktop.screens.mouse = mouse;
    panel.present();
    EXPECT_EQ(window.at, expected);
  }
  desktop.screens.mouse.reset();
  panel.windowPosition = nearMouse;
  panel.place();
  EXPECT_EQ(window.at, (Point{200, 250})) << "an unknown pointer can't be near";
  desktop.screens.all.clear();
  desktop.screens.mouse = Point{0, 0};
  panel.place();
  EXPECT_EQ(window.at, (Point{200, 250}));
}

TEST_F(FloatingPanelTest, thatCanNotHideStaysWhenItLosesTheKeyboard) {
  FloatingPanel panel(window, desktop.screens, false);
  panel.present();
  window.loseKeyboard();
  EXPECT_TRUE(window.visible);
  EXPECT_TRUE(panel.isPresented().get());
}

TEST_F(FloatingPanelTest, staysWhereTheUserHasDraggedItUntilItIsPresentedAgain) {
  FloatingPanel panel(window, desktop.screens, false);
  panel.present();
  window.at = {7, 7};
  window.movedByUser.emit();
  panel.placeAgain();
  EXPECT_EQ(window.at, (Point{7, 7}));
  panel.present();
  panel.setContentSize({500, 400});
  panel.placeAgain();
  EXPECT_EQ(window.at, (Point{710, 355}));
}

}  // namespace
}  // namespace quillmark
