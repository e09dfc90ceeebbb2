#pragma once

#include <optional>

#include "base/Signal.h"
#include "panels/PanelSettings.h"
#include "platform/PanelWindow.h"
#include "platform/Screens.h"

namespace quillmark {

/// Where the top-left corner of a panel goes: in the middle of the visible area, or centred 20 points below the pointer
/// and then moved inside the visible area. `contentWidth` is the width of the panel's content, if it has any.
Point placement(ReviewWindowPosition position, Point mouse, const Rect& visible, Size frame,
                std::optional<double> contentWidth);

/// A panel above the applications that leaves the one in front active. Main thread only.
class FloatingPanel {
 public:
  /// `canHide`: closes automatically as soon as another window takes the keyboard.
  FloatingPanel(PanelWindow& window, const Screens& screens, bool canHide);

  ReviewWindowPosition windowPosition = ReviewWindowPosition::center;

  /// Reports each present(), and each end once, however the panel closes.
  const Observable<bool>& isPresented() const { return isPresented_; }

  /// Shows the panel at its place, with the keyboard.
  void present();
  void close();
  /// Moves the panel to its place on the screen with the pointer, or else on the main screen; without a screen it stays
  /// where it is.
  void place();
  /// Places the panel again, unless the user has moved it since it was presented.
  void placeAgain();

  Size contentSize() const { return window_.contentSize(); }
  void setContentSize(Size size) { window_.setContentSize(size); }
  /// The main screen without docks; nothing without a screen.
  std::optional<Rect> mainVisibleFrame() const;

 private:
  PanelWindow& window_;
  const Screens& screens_;
  Observable<bool> isPresented_;
  bool moved_ = false;
  Connections connections_;
};

}  // namespace quillmark
