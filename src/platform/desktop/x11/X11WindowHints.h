#pragma once

#include <memory>

#include "platform/desktop/WindowHints.h"
#include "platform/desktop/x11/X11Connection.h"

namespace quillmark {

/// What our windows say to an X11 window manager. What concerns a window goes over the toolkit's connection, in order
/// with what the toolkit asks for it; the rest over ours.
class X11WindowHints : public WindowHints {
 public:
  X11WindowHints(X11Connection& connection, xcb_connection_t* toolkit);

  bool compositorRunning() const override;
  /// A panel has the property _QUILLMARK_PANEL.
  void markAsPanel(QWidget& window) override;
  void setShadow(QWidget& window, int margin) override;
  void bringToFront(QWidget& window) override;
  /// The owner of the selection of the freedesktop.org System Tray Protocol.
  bool trayManagerRunning() const override { return trayManagerRunning_; }

 private:
  bool hasOwner(xcb_atom_t selection) const;
  void followTrayManager();

  X11Connection& connection_;
  xcb_connection_t* toolkit_;
  bool trayManagerRunning_ = false;
  Connection selectionEvents_;
};

/// Those of the X server that the toolkit draws on. Where it draws elsewhere our windows are none of X11's.
std::unique_ptr<WindowHints> makeX11WindowHints(X11Connection& connection);

}  // namespace quillmark
