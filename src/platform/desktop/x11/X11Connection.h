#pragma once

#include <cstdint>
#include <cstdlib>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <xcb/xcb.h>

#include "base/Signal.h"

namespace quillmark {

struct X11Free {
  void operator()(void* reply) const { std::free(reply); }
};
/// A reply or an event allocated by the library with malloc().
template <class T>
using X11Owned = std::unique_ptr<T, X11Free>;
template <class T>
X11Owned<T> x11Owned(T* reply) {
  return X11Owned<T>(reply);
}

/// The atoms that the adapters need.
struct X11Atoms {
  xcb_atom_t atomPair, clipboard, clipboardManager, incr, multiple, targets, text, textPlain, textPlainUtf8, timestamp,
      utf8String;
  xcb_atom_t passwordManagerHint;
  xcb_atom_t netActiveWindow, netClientListStacking, netCurrentDesktop, netWmDesktop, netWmName, netWmPid, netWmState,
      netWmStateAbove, netWmStateSkipPager, netWmStateSkipTaskbar, netWmStateSticky, netWorkArea;
  xcb_atom_t gtkFrameExtents;
  xcb_atom_t compositor, systemTray;  ///< selections that the compositor and the tray manager of this screen own
  xcb_atom_t quillmarkCleared, quillmarkPanel, quillmarkTime;
};

/// A connection to the X server, separate from the toolkit's. The owner of the event loop watches descriptor() and
/// calls drain() when it is readable and each time before the loop sleeps. Without a server, or after the server is
/// gone, every operation does nothing. Main thread only.
class X11Connection {
 public:
  using EventHandler = std::function<void(const xcb_generic_event_t&)>;

  /// An empty name means the environment's DISPLAY.
  explicit X11Connection(const std::string& display = {});
  X11Connection(const X11Connection&) = delete;
  X11Connection& operator=(const X11Connection&) = delete;
  ~X11Connection();

  bool alive() const;
  /// Negative when there was never a server.
  int descriptor() const;
  /// Handles every event that has arrived; never blocks.
  void drain();

  /// Calls the handler for each event of a type (without the bit that marks sent events).
  [[nodiscard]] Connection onEvent(std::uint8_t type, EventHandler handler);

  xcb_connection_t* xcb() const { return connection_; }
  xcb_window_t root() const { return root_; }
  /// A window that is never shown, to own selections and hold properties. Its property changes are reported.
  xcb_window_t window() const { return window_; }
  const X11Atoms& atoms() const { return atoms_; }

  xcb_atom_t internAtom(std::string_view name);
  /// Asks the window manager to bring a window to the front, as a task bar does. Window managers compare a time with
  /// the user's last input. `over`: another connection to the same server, whose earlier requests must come first.
  void askToActivate(xcb_window_t window, xcb_timestamp_t time, xcb_connection_t* over = nullptr);
  /// The server's current time, in one round trip.
  xcb_timestamp_t serverTime();

  struct Property {
    xcb_atom_t type = XCB_ATOM_NONE;
    std::uint8_t format = 0;  ///< bits of a unit: 8, 16 or 32
    std::string bytes;

    /// The units of a property with format 32; empty for others.
    std::vector<std::uint32_t> numbers() const;
  };
  /// The whole value in one round trip (two for more than 256 KiB); nothing when the window or the property is gone.
  std::optional<Property> property(xcb_window_t window, xcb_atom_t name, bool andDelete = false);

  /// Marks a range of our own requests as simulating keys, so that their echoes can be told from the user's keys. An
  /// event carries the number of the last request before it, so the range ends just before `requestAfter`.
  void markSimulation(unsigned firstRequest, unsigned requestAfter);
  bool isSimulated(const xcb_generic_event_t& event) const;
  /// Whether the event happened before the server processed this request of ours.
  static bool isBefore(const xcb_generic_event_t& event, unsigned request) {
    return static_cast<std::int32_t>(event.full_sequence - request) < 0;
  }

 private:
  using Event = X11Owned<xcb_generic_event_t>;
  Event nextEvent();
  void internAtoms(int screenNumber);
  void lose();

  xcb_connection_t* connection_;
  xcb_window_t root_ = 0;
  xcb_window_t window_ = 0;
  X11Atoms atoms_{};
  std::deque<Event> pending_;  // arrived while waiting for a reply
  std::map<std::uint8_t, Signal<const xcb_generic_event_t&>> handlers_;
  std::optional<std::pair<unsigned, unsigned>> simulation_;
  bool lost_ = false;
};

}  // namespace quillmark
