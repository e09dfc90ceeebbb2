#pragma once

#include <QWidget>

#include "base/Signal.h"

namespace quillmark {

/// What our windows and our tray icon ask of the window system beyond what the toolkit asks for them. This class itself
/// stands for a window system that does no more than the toolkit asks for. Main thread only.
class WindowHints {
 public:
  WindowHints() = default;
  WindowHints(const WindowHints&) = delete;
  WindowHints& operator=(const WindowHints&) = delete;
  virtual ~WindowHints() = default;

  /// Rounded corners and translucency need a compositor.
  virtual bool compositorRunning() const { return true; }

  /// Makes the window known as a floating panel, above the others, on all desktops, in no task bar or pager. A window
  /// manager forgets most of it when the window closes: call it before each show.
  virtual void markAsPanel(QWidget& /*window*/) {}

  /// Says that a margin of this many points around the window is shadow: it takes no clicks, and window managers don't
  /// count it as part of the window. To be called again when the size changes.
  virtual void setShadow(QWidget& /*window*/, int /*margin*/) {}

  /// Raises a visible window and gives it the keyboard, also where the window manager guards against windows that push
  /// themselves to the front: this is always the answer to something that the user did.
  virtual void bringToFront(QWidget& window);

  /// The desktop has another active window (QWidget::winId() where it is ours), or has had none for a while (0).
  Signal<WId> activeWindow;

  /// Whether there is something that embeds tray icons by a protocol of the window system.
  virtual bool trayManagerRunning() const { return false; }
  Signal<> trayManagerChanged;
};

}  // namespace quillmark
