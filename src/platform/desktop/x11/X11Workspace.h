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

/// Applications, known by the active window that the window manager names. An application is a process and a window
/// class; a window without a process id is identified by its class alone. Windows with the property _QUILLMARK_PANEL of
/// this process are panels.
class X11Workspace : public Workspace {
 public:
  /// How long keys wait for an activated application to come to the front, which it may never do.
  static constexpr Duration activationPatience = std::chrono::milliseconds(60);

  /// `ownIdentifier`: the bundle identifier of applications of this process.
  X11Workspace(X11Connection& connection, MainQueue& queue, std::string ownIdentifier);

  Application frontmostApplication() const override;
  void openUrl(const std::string& url) override;

  /// Calls back at once or, while an application is being activated, as soon as it is in front: keys posted earlier
  /// would go to the window in front before it.
  void whenActivated(std::function<void()> callback);

  /// The desktop has another active window, which may also be a panel of ours, or has had none for a while.
  Signal<xcb_window_t> activeWindow;

 private:
  class App;
  using Key = std::pair<pid_t, std::string>;  // process (0: unknown) and class

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
  xcb_window_t awaited_ = XCB_NONE;  ///< asked to come to the front, not there yet
  std::vector<std::function<void()>> waiting_;
  TimerHandle patience_;
  TimerHandle noneForLong_;
  Connection propertyEvents_;
  Lifetime lifetime_;
};

}  // namespace quillmark
