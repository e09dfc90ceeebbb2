#include "platform/desktop/x11/X11Connection.h"

#include <cstring>

#include <sys/eventfd.h>
#include <unistd.h>
#include <xcb/xcbext.h>

#include "base/Log.h"

namespace quillmark {
namespace {

struct AtomName {
  xcb_atom_t X11Atoms::*atom;
  std::string_view name;
};

constexpr AtomName atomNames[] = {
    {&X11Atoms::atomPair, "ATOM_PAIR"},
    {&X11Atoms::clipboard, "CLIPBOARD"},
    {&X11Atoms::clipboardManager, "CLIPBOARD_MANAGER"},
    {&X11Atoms::incr, "INCR"},
    {&X11Atoms::multiple, "MULTIPLE"},
    {&X11Atoms::targets, "TARGETS"},
    {&X11Atoms::text, "TEXT"},
    {&X11Atoms::textPlain, "text/plain"},
    {&X11Atoms::textPlainUtf8, "text/plain;charset=utf-8"},
    {&X11Atoms::timestamp, "TIMESTAMP"},
    {&X11Atoms::utf8String, "UTF8_STRING"},
    {&X11Atoms::passwordManagerHint, "x-kde-passwordManagerHint"},
    {&X11Atoms::netActiveWindow, "_NET_ACTIVE_WINDOW"},
    {&X11Atoms::netClientListStacking, "_NET_CLIENT_LIST_STACKING"},
    {&X11Atoms::netCurrentDesktop, "_NET_CURRENT_DESKTOP"},
    {&X11Atoms::netWmDesktop, "_NET_WM_DESKTOP"},
    {&X11Atoms::netWmName, "_NET_WM_NAME"},
    {&X11Atoms::netWmPid, "_NET_WM_PID"},
    {&X11Atoms::netWmState, "_NET_WM_STATE"},
    {&X11Atoms::netWmStateAbove, "_NET_WM_STATE_ABOVE"},
    {&X11Atoms::netWmStateSkipPager, "_NET_WM_STATE_SKIP_PAGER"},
    {&X11Atoms::netWmStateSkipTaskbar, "_NET_WM_STATE_SKIP_TASKBAR"},
    {&X11Atoms::netWmStateSticky, "_NET_WM_STATE_STICKY"},
    {&X11Atoms::netWorkArea, "_NET_WORKAREA"},
    {&X11Atoms::gtkFrameExtents, "_GTK_FRAME_EXTENTS"},
    {&X11Atoms::compositor, "_NET_WM_CM_S"},
    {&X11Atoms::systemTray, "_NET_SYSTEM_TRAY_S"},
    {&X11Atoms::quillmarkCleared, "application/x-quillmark-cleared"},
    {&X11Atoms::quillmarkPanel, "_QUILLMARK_PANEL"},
    {&X11Atoms::quillmarkTime, "_QUILLMARK_TIME"},
};

/// Selections that exist once per screen have its number at the end of their names.
bool isOfScreen(std::string_view name) { return name.ends_with("_S"); }

constexpr std::uint8_t sentByClient = 0x80;
constexpr std::uint32_t asTaskBar = 2;  // EWMH: a direct user action, not an application asking for attention

}  // namespace

X11Connection::X11Connection(const std::string& display) {
  int screenNumber = 0;
  connection_ = xcb_connect(display.empty() ? nullptr : display.c_str(), &screenNumber);
  if (!alive()) {
    log("X11: no connection to the server" + (display.empty() ? "" : " " + display));
    lost_ = true;
    return;
  }
  auto screen = xcb_setup_roots_iterator(xcb_get_setup(connection_));
  for (int i = 0; i < screenNumber && screen.rem > 1; ++i) {
    xcb_screen_next(&screen);
  }
  root_ = screen.data->root;
  window_ = xcb_generate_id(connection_);
  const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
  xcb_create_window(connection_, 0, window_, root_, -1, -1, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT,
                    XCB_CW_EVENT_MASK, &events);
  internAtoms(screenNumber);
}

X11Connection::~X11Connection() { xcb_disconnect(connection_); }

bool X11Connection::alive() const { return xcb_connection_has_error(connection_) == 0; }

int X11Connection::descriptor() const { return xcb_get_file_descriptor(connection_); }

void X11Connection::internAtoms(int screenNumber) {
  std::vector<xcb_intern_atom_cookie_t> cookies;
  for (const auto& [atom, name] : atomNames) {
    const std::string whole = std::string(name) + (isOfScreen(name) ? std::to_string(screenNumber) : "");
    cookies.push_back(xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(whole.size()), whole.data()));
  }
  for (std::size_t i = 0; i < cookies.size(); ++i) {
    if (auto reply = x11Owned(xcb_intern_atom_reply(connection_, cookies[i], nullptr))) {
      atoms_.*atomNames[i].atom = reply->atom;
    }
  }
}

xcb_atom_t X11Connection::internAtom(std::string_view name) {
  auto reply = x11Owned(xcb_intern_atom_reply(
      connection_, xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data()), nullptr));
  return reply ? reply->atom : xcb_atom_t{};
}

void X11Connection::askToActivate(xcb_window_t window, xcb_timestamp_t time, xcb_connection_t* over) {
  auto* const connection = over ? over : connection_;
  xcb_client_message_event_t message{};
  message.response_type = XCB_CLIENT_MESSAGE;
  message.format = 32;
  message.window = window;
  message.type = atoms_.netActiveWindow;
  message.data.data32[0] = asTaskBar;
  message.data.data32[1] = time;
  xcb_send_event(connection, 0, root_, XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                 reinterpret_cast<const char*>(&message));
  xcb_flush(connection);
}

Connection X11Connection::onEvent(std::uint8_t type, EventHandler handler) {
  return handlers_[type].connect(std::move(handler));
}

X11Connection::Event X11Connection::nextEvent() {
  if (!pending_.empty()) {
    auto event = std::move(pending_.front());
    pending_.pop_front();
    return event;
  }
  return Event(xcb_poll_for_event(connection_));
}

void X11Connection::drain() {
  if (lost_) {
    return;
  }
  xcb_flush(connection_);
  while (const auto event = nextEvent()) {
    // Type 0 is the error of an unchecked request, for another application's window that is now gone.
    const auto handlers = handlers_.find(event->response_type & ~sentByClient);
    if (event->response_type != 0 && handlers != handlers_.end()) {
      handlers->second.emit(*event);
    }
  }
  xcb_flush(connection_);
  if (!alive()) {
    lose();
  }
}

void X11Connection::lose() {
  lost_ = true;
  log("X11: the connection to the server is lost");
  // A closed connection is readable for ever; replace its descriptor with one that never wakes the loop.
  if (const int silent = eventfd(0, EFD_CLOEXEC); silent >= 0) {
    dup2(silent, descriptor());
    ::close(silent);
  }
}

xcb_timestamp_t X11Connection::serverTime() {
  // An empty property change is reported with the server's time, before the reply to the next request.
  xcb_change_property(connection_, XCB_PROP_MODE_APPEND, window_, atoms_.quillmarkTime, XCB_ATOM_INTEGER, 8, 0,
                      nullptr);
  x11Owned(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
  while (auto event = Event(xcb_poll_for_queued_event(connection_))) {
    pending_.push_back(std::move(event));
  }
  xcb_timestamp_t time = XCB_CURRENT_TIME;
  std::erase_if(pending_, [&](const Event& event) {
    if (event->response_type != XCB_PROPERTY_NOTIFY) {
      return false;
    }
    const auto& notify = reinterpret_cast<const xcb_property_notify_event_t&>(*event);
    if (notify.window != window_ || notify.atom != atoms_.quillmarkTime) {
      return false;
    }
    time = notify.time;
    return true;
  });
  return time;
}

std::vector<std::uint32_t> X11Connection::Property::numbers() const {
  std::vector<std::uint32_t> result(format == 32 ? bytes.size() / 4 : 0);
  std::memcpy(result.data(), bytes.data(), result.size() * 4);
  return result;
}

std::optional<X11Connection::Property> X11Connection::property(xcb_window_t window, xcb_atom_t name, bool andDelete) {
  Property result;
  std::uint32_t units = 65536;  // of 4 bytes
  for (std::uint32_t offset = 0;; offset += units) {
    auto reply = x11Owned(xcb_get_property_reply(
        connection_,
        xcb_get_property(connection_, andDelete ? 1 : 0, window, name, XCB_GET_PROPERTY_TYPE_ANY, offset, units),
        nullptr));
    if (!reply || reply->type == XCB_ATOM_NONE) {
      return std::nullopt;
    }
    result.type = reply->type;
    result.format = reply->format;
    result.bytes.append(static_cast<const char*>(xcb_get_property_value(reply.get())),
                        static_cast<std::size_t>(xcb_get_property_value_length(reply.get())));
    // The server deletes the property only on the read that reaches its end.
    if (reply->bytes_after == 0) {
      return result;
    }
  }
}

void X11Connection::markSimulation(unsigned firstRequest, unsigned requestAfter) {
  simulation_ = {firstRequest, requestAfter};
}

bool X11Connection::isSimulated(const xcb_generic_event_t& event) const {
  return simulation_ && !isBefore(event, simulation_->first) && isBefore(event, simulation_->second);
}

}  // namespace quillmark
