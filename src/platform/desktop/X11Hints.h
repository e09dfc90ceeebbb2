#pragma once

#include <QtGlobal>

class QWidget;

/// What windows of ours say to an X11 window manager beyond what the toolkit says for them. Without an X server all of
/// it does nothing.
namespace quillmark::x11 {

/// Rounded corners and translucency need one.
bool compositorRunning();

/// Makes the window known as a floating panel (property _QUILLMARK_PANEL), above the others, on all desktops, in no
/// task bar or pager. A window manager forgets most of it when the window closes: call it before each show.
void markAsPanel(QWidget& window);

/// Says that a margin of this many points around the window is shadow: it takes no clicks, and window managers don't
/// count it as part of the window. To be called again when the size changes.
void setShadow(QWidget& window, int margin);

/// Raises a visible window and gives it the keyboard, also where the window manager guards against windows that push
/// themselves to the front: this is always the answer to something that the user did.
void bringToFront(QWidget& window);

}  // namespace quillmark::x11
