#include "platform/desktop/X11Hints.h"

#include <QGuiApplication>
#include <QWidget>
#include <array>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <xcb/xcb.h>
#include <xcb/xfixes.h>

namespace quillmark::x11 {

namespace {

struct Free {
  void operator()(void* reply) const { std::free(reply); }
};

/// What this file needs of the toolkit's own connection, asked for once.
struct Toolkit {
  xcb_connection_t* connection;
  xcb_window_t root = XCB_NONE;
  xcb_atom_t compositor, panel, desktop, state, above, sticky, skipTaskbar, skipPager, activeWindow, shadow;

  explicit Toolkit(xcb_connection_t* of) : connection(of) {
    char* host = nullptr;
    int display = 0;
    int number = 0;
    xcb_parse_display(nullptr, &host, &display, &number);
    std::free(host);
    auto screen = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (int i = 0; i < number && screen.rem > 1; ++i) {
      xcb_screen_next(&screen);
    }
    root = screen.data->root;

    const std::string compositorName = "_NET_WM_CM_S" + std::to_string(number);
    const std::array<std::pair<xcb_atom_t*, std::string_view>, 10> wanted{{
        {&compositor, compositorName},
        {&panel, "_QUILLMARK_PANEL"},
        {&desktop, "_NET_WM_DESKTOP"},
        {&state, "_NET_WM_STATE"},
        {&above, "_NET_WM_STATE_ABOVE"},
        {&sticky, "_NET_WM_STATE_STICKY"},
        {&skipTaskbar, "_NET_WM_STATE_SKIP_TASKBAR"},
        {&skipPager, "_NET_WM_STATE_SKIP_PAGER"},
        {&activeWindow, "_NET_ACTIVE_WINDOW"},
        {&shadow, "_GTK_FRAME_EXTENTS"},
    }};
    std::array<xcb_intern_atom_cookie_t, wanted.size()> cookies{};
    for (std::size_t i = 0; i < wanted.size(); ++i) {
      const std::string_view name = wanted[i].second;
      cookies[i] = xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
    }
    for (std::size_t i = 0; i < wanted.size(); ++i) {
      const std::unique_ptr<xcb_intern_atom_reply_t, Free> reply(
          xcb_intern_atom_reply(connection, cookies[i], nullptr));
      *wanted[i].first = reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
    }
  }
};

const Toolkit* toolkit() {
  static const auto instance = []() -> std::optional<Toolkit> {
    const auto* const application = qApp->nativeInterface<QNativeInterface::QX11Application>();
    // The toolkit's off-screen platform has the interface, but no connection.
    if (application && application->connection()) {
      return Toolkit(application->connection());
    }
    return std::nullopt;
  }();
  return instance ? &*instance : nullptr;
}

template <std::size_t Count>
void setProperty(const Toolkit& x, xcb_window_t window, xcb_atom_t property, xcb_atom_t type,
                 const std::array<std::uint32_t, Count>& values) {
  xcb_change_property(x.connection, XCB_PROP_MODE_REPLACE, window, property, type, 32, Count, values.data());
}

}  // namespace

bool compositorRunning() {
  const Toolkit* const x = toolkit();
  if (!x) {
    return true;  // window systems other than X11 always compose
  }
  const std::unique_ptr<xcb_get_selection_owner_reply_t, Free> reply(
      xcb_get_selection_owner_reply(x->connection, xcb_get_selection_owner(x->connection, x->compositor), nullptr));
  return reply && reply->owner != XCB_NONE;
}

void markAsPanel(QWidget& window) {
  const Toolkit* const x = toolkit();
  if (!x) {
    return;
  }
  constexpr std::uint32_t onAllDesktops = 0xFFFFFFFF;
  const auto id = static_cast<xcb_window_t>(window.winId());
  setProperty<1>(*x, id, x->panel, XCB_ATOM_CARDINAL, {1});
  setProperty<1>(*x, id, x->desktop, XCB_ATOM_CARDINAL, {onAllDesktops});
  setProperty<4>(*x, id, x->state, XCB_ATOM_ATOM, {x->above, x->sticky, x->skipTaskbar, x->skipPager});
}

void setShadow(QWidget& window, int margin) {
  const Toolkit* const x = toolkit();
  if (!x) {
    return;
  }
  const qreal scale = window.devicePixelRatioF();
  const auto pixels = static_cast<std::uint32_t>(qRound(margin * scale));
  const auto id = static_cast<xcb_window_t>(window.winId());
  setProperty<4>(*x, id, x->shadow, XCB_ATOM_CARDINAL, {pixels, pixels, pixels, pixels});
  constexpr xcb_shape_kind_t input = 2;  // ShapeInput of the Shape extension
  const QSize size = window.size() * scale;
  const xcb_rectangle_t inside{static_cast<std::int16_t>(pixels), static_cast<std::int16_t>(pixels),
                               static_cast<std::uint16_t>(std::max(0, size.width() - 2 * int(pixels))),
                               static_cast<std::uint16_t>(std::max(0, size.height() - 2 * int(pixels)))};
  const xcb_xfixes_region_t region = xcb_generate_id(x->connection);
  xcb_xfixes_create_region(x->connection, region, 1, &inside);
  xcb_xfixes_set_window_shape_region(x->connection, id, input, 0, 0, margin > 0 ? region : XCB_NONE);
  xcb_xfixes_destroy_region(x->connection, region);
}

void bringToFront(QWidget& window) {
  window.raise();
  window.activateWindow();
  const Toolkit* const x = toolkit();
  if (!x) {
    return;
  }
  // The toolkit asks as an application, with the time of the last event in a window of ours, which can be hours ago.
  // Asked as a task bar asks, without a time, window managers don't weigh it against the user's last key.
  constexpr std::uint32_t asTaskBar = 2;
  xcb_client_message_event_t event{};
  event.response_type = XCB_CLIENT_MESSAGE;
  event.format = 32;
  event.window = static_cast<xcb_window_t>(window.winId());
  event.type = x->activeWindow;
  event.data.data32[0] = asTaskBar;
  event.data.data32[1] = XCB_CURRENT_TIME;
  xcb_send_event(x->connection, 0, x->root, XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                 reinterpret_cast<const char*>(&event));
  xcb_flush(x->connection);
}

}  // namespace quillmark::x11
