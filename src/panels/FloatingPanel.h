#pragma once

#include <optional>

#include "base/Signal.h"
#include "panels/PanelSettings.h"
#include "platform/PanelWindow.h"
#include "platform/Screens.h"

namespace quillmark {

/// Where the top-left corner of a panel goes: in the middle of the visible area, or hanging 20 points under the pointer
/// and centred on it, then pushed inside the visible area. `contentWidth` is that of the panel's content, if it has
/// any.
Point placement(ReviewWindowPosition position, Point mouse, const Rect& visible, Size frame,
                std::optional<double> contentWidth);

/// A panel above the applications that leaves the one in front active. Main thread only.
class FloatingPanel {
 public:
  /// `canHide`: closes by itself as soon as another window takes the keyboard.
  FloatingPanel(PanelWindow& window, const Screens& screens, bool canHide);

  ReviewWindowPosition windowPosition = ReviewWindowPosition::center;

  /// Tells of each present(), and once of each end, by whatever way the panel closes.
  const Observable<bool>& isPresented() const { return isPresented_; }

  /// Shows the panel at its place, with the keyboard.
  void present();
  void close();
  /// Moves the panel to its place, on the screen where the pointer is, or else on the main screen; without any screen
  /// it stays where it is.
  void place();
  /// Places the panel again, unless the user has moved it since it was presented.
  void placeAgain();

  Size contentSize() const { return window_.contentSize(); }
  void setContentSize(Size size) { window_.setContentSize(size); }
  /// What of the main screen is not taken by docks; nothing without a screen.
  std::optional<Rect> mainVisibleFrame() const;

 private:
  PanelWindow& window_;
  const Screens& screens_;
  Observable<bool> isPresented_;
  bool moved_ = false;
  Connections connections_;
};

}  // namespace quillmark
