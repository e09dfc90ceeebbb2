#include "platform/desktop/x11/X11Workspace.h"

#include <algorithm>

#include <unistd.h>

#include "base/Text.h"
#include "platform/desktop/Browser.h"
#include "platform/desktop/x11/X11WindowClass.h"

namespace quillmark {
namespace {

constexpr auto passing = std::chrono::milliseconds(150);

std::optional<std::string> unlessEmpty(std::string text) {
  return text.empty() ? std::nullopt : std::optional(std::move(text));
}

}  // namespace

class X11Workspace::App : public RunningApplication {
 public:
  App(std::optional<std::string> identifier, std::optional<std::string> name,
      std::function<void(xcb_window_t)> activate)
      : identifier_(std::move(identifier)), name_(std::move(name)), activate_(std::move(activate)) {}

  std::optional<std::string> bundleIdentifier() const override { return identifier_; }
  std::optional<std::string> localizedName() const override { return name_; }
  void activate() override { activate_(lastActive_); }

  void setLastActive(xcb_window_t window) { lastActive_ = window; }

 private:
  std::optional<std::string> identifier_;
  std::optional<std::string> name_;
  std::function<void(xcb_window_t)> activate_;
  xcb_window_t lastActive_ = XCB_NONE;
};

X11Workspace::X11Workspace(X11Connection& connection, MainQueue& queue, std::string ownIdentifier)
    : connection_(connection), queue_(queue), ownIdentifier_(std::move(ownIdentifier)) {
  if (!connection_.alive()) {
    return;
  }
  const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
  xcb_change_window_attributes(connection_.xcb(), connection_.root(), XCB_CW_EVENT_MASK, &events);
  propertyEvents_ = connection_.onEvent(XCB_PROPERTY_NOTIFY, [this](const xcb_generic_event_t& event) {
    const auto& notify = reinterpret_cast<const xcb_property_notify_event_t&>(event);
    if (notify.window == connection_.root() && notify.atom == connection_.atoms().netActiveWindow) {
      activeWindowChanged();
    }
  });
  activeWindowChanged();
}

Application X11Workspace::frontmostApplication() const { return frontmost_; }

std::optional<X11Workspace::Key> X11Workspace::keyOf(xcb_window_t window) const {
  const auto names = x11WindowClass(connection_, window);
  const auto process = connection_.property(window, connection_.atoms().netWmPid);
  const auto numbers = process ? process->numbers() : std::vector<std::uint32_t>{};
  const auto pid = numbers.empty() ? pid_t{0} : static_cast<pid_t>(numbers.front());
  if (pid == 0 && names.className.empty()) {
    return std::nullopt;
  }
  // Our own windows are one application, whatever classes the toolkit gives them.
  return Key{pid, pid == getpid() ? std::string() : names.className};
}

xcb_window_t X11Workspace::activeWindowNow() const {
  const auto active = connection_.property(connection_.root(), connection_.atoms().netActiveWindow);
  const auto windows = active ? active->numbers() : std::vector<std::uint32_t>{};
  return windows.empty() ? xcb_window_t{XCB_NONE} : windows.front();
}

void X11Workspace::activeWindowChanged() {
  const xcb_window_t window = activeWindowNow();
  noneForLong_.cancel();
  if (window == XCB_NONE) {
    // Usually just between two windows; after a click on the bare root window it stays so.
    noneForLong_ = queue_.after(passing, lifetime_.guard([this] { activeWindow.emit(XCB_NONE); }));
    return;
  }
  if (window == awaited_) {
    endWait();
  }
  activeWindow.emit(window);
  const auto key = keyOf(window);
  const bool own = key && key->first == getpid();
  if (!key || (own && connection_.property(window, connection_.atoms().quillmarkPanel))) {
    return;
  }

  auto application = known_[*key].lock();
  if (!application) {
    std::erase_if(known_, [](const auto& entry) { return entry.second.expired(); });
    auto name = unlessEmpty(key->second);
    application =
        std::make_shared<App>(own    ? ownIdentifier_
                              : name ? std::optional(text::lowerCased(*name))
                                     : name,
                              name, lifetime_.guard([this, key = *key](xcb_window_t last) { activate(key, last); }));
    known_[*key] = application;
  }
  application->setLastActive(window);
  if (application != frontmost_) {
    frontmost_ = application;
    didActivateApplication.emit(application);
  }
}

void X11Workspace::activate(const Key& key, xcb_window_t lastActive) {
  // If its last active window has been closed, the topmost of the others.
  const auto stacking = connection_.property(connection_.root(), connection_.atoms().netClientListStacking);
  auto windows = stacking ? stacking->numbers() : std::vector<std::uint32_t>{};  // bottom to top
  xcb_window_t target = lastActive;
  if (stacking && std::ranges::find(windows, lastActive) == windows.end()) {
    std::ranges::reverse(windows);
    const auto other = std::ranges::find_if(windows, [&](xcb_window_t window) {
      return keyOf(window) == key && !connection_.property(window, connection_.atoms().quillmarkPanel);
    });
    if (other == windows.end()) {
      return;
    }
    target = *other;
  }
  connection_.askToActivate(target, connection_.serverTime());
  if (target != activeWindowNow()) {
    awaited_ = target;
    patience_.cancel();
    patience_ = queue_.after(activationPatience, lifetime_.guard([this] { endWait(); }));
  }
}

void X11Workspace::whenActivated(std::function<void()> callback) {
  if (awaited_ == XCB_NONE) {
    callback();
  } else {
    waiting_.push_back(std::move(callback));
  }
}

void X11Workspace::endWait() {
  awaited_ = XCB_NONE;
  patience_.cancel();
  for (const auto& callback : std::exchange(waiting_, {})) {
    callback();
  }
}

void X11Workspace::openUrl(const std::string& url) { openInBrowser(url); }

}  // namespace quillmark
