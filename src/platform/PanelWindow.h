#pragma once

#include "platform/FloatingWindow.h"

namespace quillmark {

/// A panel that takes the keyboard without making this the active application. It is created once, shown and closed
/// many times, and keeps its content. Main thread only.
class PanelWindow : public FloatingWindow {
 public:
  virtual Size contentSize() const = 0;
  virtual void setContentSize(Size size) = 0;
  /// Shows the window and gives it the keyboard.
  virtual void makeKeyAndOrderFront() = 0;

  /// Another window has taken the keyboard while this one was shown.
  Signal<> resignedMain;
  /// The window system has closed the window.
  Signal<> closedBySystem;
  /// The user has dragged the window to another place.
  Signal<> movedByUser;
};

}  // namespace quillmark
