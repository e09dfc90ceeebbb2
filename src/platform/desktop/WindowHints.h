#pragma once

#include <QWidget>

#include "base/Signal.h"

namespace quillmark {

/// What our windows and tray icon need of the window system beyond what the toolkit does for them. This base class is
/// for a window system that offers nothing more. Main thread only.
class WindowHints {
 public:
  WindowHints() = default;
  WindowHints(const WindowHints&) = delete;
  WindowHints& operator=(const WindowHints&) = delete;
  virtual ~WindowHints() = default;

  /// Rounded corners and translucency need a compositor.
  virtual bool compositorRunning() const { return true; }

  /// Marks the window as a floating panel: above the others, on all desktops, in no task bar or pager. Window managers
  /// forget most of this when the window closes: call it before each show.
  virtual void markAsPanel(QWidget& /*window*/) {}

  /// Declares a margin of this many points around the window as shadow: it takes no clicks, and window managers don't
  /// count it as part of the window. Call it again when the size changes.
  virtual void setShadow(QWidget& /*window*/, int /*margin*/) {}

  /// Raises a visible window and gives it the keyboard, even where the window manager prevents focus stealing: this
  /// always follows an action of the user.
  virtual void bringToFront(QWidget& window);

  /// The desktop's active window has changed (QWidget::winId() if it is ours), or there has been none for a while (0).
  Signal<WId> activeWindow;

  /// Whether anything embeds tray icons by a protocol of the window system.
  virtual bool trayManagerRunning() const { return false; }
  Signal<> trayManagerChanged;
};

}  // namespace quillmark
