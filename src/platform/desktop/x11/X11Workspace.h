#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <utility>
#include <vector>

#include <sys/types.h>

#include "base/Lifetime.h"
#include "platform/MainQueue.h"
#include "platform/Workspace.h"
#include "platform/desktop/x11/X11Connection.h"

namespace quillmark {

/// Applications by the window that the window manager names as active. An application is a process and a window class;
/// a window that tells no process is told by its class alone. Windows with the property _QUILLMARK_PANEL of this
/// process are panels.
class X11Workspace : public Workspace {
 public:
  /// How long keys wait for an application to come forward that may never come.
  static constexpr Duration activationPatience = std::chrono::milliseconds(60);

  /// `ownIdentifier`: what applications() of this process answer as their bundle identifier.
  X11Workspace(X11Connection& connection, MainQueue& queue, std::string ownIdentifier);

  Application frontmostApplication() const override;
  void openUrl(const std::string& url) override;

  /// Calls back at once, or, when an application is just being activated, as soon as it is in front: keys that are
  /// posted before that would go to the window which it takes the place of.
  void whenActivated(std::function<void()> callback);

  /// The desktop has another active window, which may also be a panel of ours, or has had none for a while.
  Signal<xcb_window_t> activeWindow;

 private:
  class App;
  using Key = std::pair<pid_t, std::string>;  // process (0: untold) and class

  std::optional<Key> keyOf(xcb_window_t window) const;
  void activeWindowChanged();
  void activate(const Key& key, xcb_window_t lastActive);
  xcb_window_t activeWindowNow() const;
  void endWait();

  X11Connection& connection_;
  MainQueue& queue_;
  std::string ownIdentifier_;
  std::shared_ptr<App> frontmost_;
  std::map<Key, std::weak_ptr<App>> known_;
  xcb_window_t awaited_ = XCB_NONE;  ///< asked to come to the front and not there yet
  std::vector<std::function<void()>> waiting_;
  TimerHandle patience_;
  TimerHandle noneForLong_;
  Connection propertyEvents_;
  Lifetime lifetime_;
};

}  // namespace quillmark
