#pragma once

#include <QTimer>
#include <memory>

#include "base/Signal.h"
#include "platform/desktop/WindowHints.h"

namespace quillmark {

/// Knows whether anything on this desktop shows tray icons: a StatusNotifierItem host (freedesktop.org draft) on the
/// session bus, or a tray manager of the window system. Does not use the toolkit's tray class, which settles on the
/// older protocol for good when it is used before a host of the newer one appears.
class TrayHost {
 public:
  /// The answer comes through the event loop; until then `available` is false.
  explicit TrayHost(WindowHints& hints);
  TrayHost(const TrayHost&) = delete;
  TrayHost& operator=(const TrayHost&) = delete;
  ~TrayHost();

  /// A host can appear late, disappear and come back.
  Observable<bool> available;
  /// Whether there is a StatusNotifierItem host, which draws menus itself, in its own colours.
  bool drawsMenus() const;

 private:
  class Notifier;

  void update();

  WindowHints& hints_;
  bool started_ = false;
  std::unique_ptr<Notifier> notifier_;
  QTimer settle_;  // gives a host of the newer protocol its chance
  Connection trayManagerChanges_;
};

}  // namespace quillmark
