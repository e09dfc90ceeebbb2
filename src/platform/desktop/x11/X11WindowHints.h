#pragma once

#include <memory>

#include "platform/desktop/WindowHints.h"
#include "platform/desktop/x11/X11Connection.h"

namespace quillmark {

/// What our windows tell an X11 window manager. Requests about a window go over the toolkit's connection, in order with
/// the toolkit's own; the rest go over ours.
class X11WindowHints : public WindowHints {
 public:
  X11WindowHints(X11Connection& connection, xcb_connection_t* toolkit);

  bool compositorRunning() const override;
  /// Marks a panel with the property _QUILLMARK_PANEL.
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

/// The hints for the X server that the toolkit draws on. Where the toolkit uses another platform our windows are not
/// X11 windows.
std::unique_ptr<WindowHints> makeX11WindowHints(X11Connection& connection);

}  // namespace quillmark
