#pragma once

#include "base/Lifetime.h"
#include "execution/LoadingPanel.h"
#include "platform/FloatingWindow.h"
#include "platform/MainQueue.h"
#include "platform/Screens.h"

namespace quillmark {

/// The loading indicator: a window of 20 by 20 points that trails the pointer and never takes the focus.
class FloatingLoading : public LoadingPanel {
 public:
  static constexpr Duration positionUpdateInterval = std::chrono::milliseconds(50);
  static constexpr double side = 20;
  static constexpr double distance = 25;

  FloatingLoading(MainQueue& queue, const Screens& screens, FloatingWindow& window)
      : queue_(queue), screens_(screens), window_(window) {}

  void show() override;
  void hide() override;

 private:
  void follow();

  MainQueue& queue_;
  const Screens& screens_;
  FloatingWindow& window_;
  TimerHandle positionUpdateTimer_;  // for the first appearance, then for each step
  Lifetime lifetime_;
};

}  // namespace quillmark
