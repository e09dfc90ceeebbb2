#pragma once

#include <map>
#include <utility>

#include <sys/types.h>

#include "base/Lifetime.h"
#include "platform/Workspace.h"
#include "platform/desktop/x11/X11Connection.h"

namespace quillmark {

/// Applications by the window that the window manager names as active. An application is a process and a window class;
/// a window that tells no process is told by its class alone. Windows with the property _QUILLMARK_PANEL of this
/// process are panels.
class X11Workspace : public Workspace {
 public:
  /// `ownIdentifier`: what applications() of this process answer as their bundle identifier.
  X11Workspace(X11Connection& connection, std::string ownIdentifier);

  Application frontmostApplication() const override;
  void openUrl(const std::string& url) override;

  /// The desktop has another active window, which may also be a panel of ours.
  Signal<xcb_window_t> activeWindow;

 private:
  class App;
  using Key = std::pair<pid_t, std::string>;  // process (0: untold) and class

  std::optional<Key> keyOf(xcb_window_t window) const;
  void activeWindowChanged();
  void activate(const Key& key, xcb_window_t lastActive);

  X11Connection& connection_;
  std::string ownIdentifier_;
  std::shared_ptr<App> frontmost_;
  std::map<Key, std::weak_ptr<App>> known_;
  Connection propertyEvents_;
  Lifetime lifetime_;
};

}  // namespace quillmark
