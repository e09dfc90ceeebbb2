#pragma once

#include "base/Signal.h"
#include "platform/Geometry.h"

namespace quillmark {

/// A window above others, on every desktop, in no task bar. The window system may ignore a position, so nothing reads
/// one back, and it may close the window on its own. Main thread only.
class FloatingWindow {
 public:
  FloatingWindow() = default;
  FloatingWindow(const FloatingWindow&) = delete;
  FloatingWindow& operator=(const FloatingWindow&) = delete;
  virtual ~FloatingWindow() = default;

  virtual void moveTopLeft(Point corner) = 0;
  /// Shows the window without giving it the keyboard.
  virtual void orderFront() = 0;
  virtual void close() = 0;
};

}  // namespace quillmark
