#include <gtest/gtest.h>

#include "execution/ActiveApplicationTracker.h"
#include "platform/simulated/SimulatedDesktop.h"

namespace quillmark {
namespace {

using namespace std::chrono_literals;

struct Tracker : testing::Test {
  SimulatedDesktop desktop;
  ActiveApplicationTracker tracker{desktop.workspace, desktop.queue, SimulatedDesktop::ownBundleId};
};

TEST_F(Tracker, bringsBackTheApplicationHalfASecondBeforeTheTrigger) {
  const auto a = desktop.openEditor("A", "");
  desktop.advance(1min);
  const auto b = desktop.openEditor("B", "");
  desktop.openEditor("C", "");  // at the same moment
  desktop.advance(499ms);
  tracker.markCommandTriggered(true);
  EXPECT_EQ(tracker.appBeforeCommand(), a);
  desktop.advance(1ms);
  tracker.markCommandTriggered(true);
  EXPECT_EQ(tracker.appBeforeCommand(), b) << "the first of two that came together";
  tracker.restoreFocus();
  EXPECT_EQ(desktop.workspace.front, b);
  EXPECT_FALSE(tracker.commandTriggerTimestamp().has_value());

  desktop.advance(1s);
  desktop.activateOwnWindow();
  desktop.advance(1s);
  tracker.markCommandTriggered(true);
  tracker.restoreFocus();
  EXPECT_EQ(tracker.appBeforeCommand()->bundleIdentifier(), SimulatedDesktop::ownBundleId);
  EXPECT_TRUE(tracker.commandTriggerTimestamp().has_value()) << "this program is never brought back";
}

TEST_F(Tracker, keepsTheLastTenActivations) {
  for (int i = 1; i <= 11; ++i) {
    desktop.openEditor("app" + std::to_string(i), "");
    desktop.advance(1s);
  }
  ASSERT_EQ(tracker.timeline().size(), 10u);
  EXPECT_EQ(tracker.timeline().front().app->localizedName(), "app2");
}

TEST_F(Tracker, fallsBackToTheLatestOtherApplication) {
  tracker.restoreFocus();
  EXPECT_EQ(tracker.appBeforeCommand(), nullptr) << "nothing was ever in front";
  const auto c = desktop.openEditor("C", "");
  desktop.activateOwnWindow();
  tracker.markCommandTriggered(true);
  EXPECT_EQ(tracker.appBeforeCommand(), c) << "no activation is old enough";
  tracker.clearCommandTrigger();
  EXPECT_EQ(tracker.appBeforeCommand(), c) << "nothing was triggered";
}

TEST_F(Tracker, overridesAnOldMarkOnlyByForce) {
  tracker.markCommandTriggered(false);
  const auto first = tracker.commandTriggerTimestamp();
  desktop.advance(1s);
  tracker.markCommandTriggered(false);
  EXPECT_EQ(tracker.commandTriggerTimestamp(), first);
  tracker.markCommandTriggered(true);
  EXPECT_NE(tracker.commandTriggerTimestamp(), first);
}

}  // namespace
}  // namespace quillmark
