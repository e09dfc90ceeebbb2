#include "platform/desktop/x11/X11WindowHints.h"

#include <QGuiApplication>
#include <algorithm>
#include <array>

#include <xcb/xfixes.h>

namespace quillmark {

namespace {

template <std::size_t Count>
void setProperty(xcb_connection_t* connection, const QWidget& window, xcb_atom_t property, xcb_atom_t type,
                 const std::array<std::uint32_t, Count>& values) {
  xcb_change_property(connection, XCB_PROP_MODE_REPLACE, static_cast<xcb_window_t>(window.winId()), property, type, 32,
                      Count, values.data());
}

}  // namespace

X11WindowHints::X11WindowHints(X11Connection& connection, xcb_connection_t* toolkit)
    : connection_(connection), toolkit_(toolkit) {
  followTrayManager();
}

bool X11WindowHints::hasOwner(xcb_atom_t selection) const {
  auto* const xcb = connection_.xcb();
  const auto reply = x11Owned(xcb_get_selection_owner_reply(xcb, xcb_get_selection_owner(xcb, selection), nullptr));
  return reply && reply->owner != XCB_NONE;
}

bool X11WindowHints::compositorRunning() const { return hasOwner(connection_.atoms().compositor); }

void X11WindowHints::markAsPanel(QWidget& window) {
  const auto& atoms = connection_.atoms();
  constexpr std::uint32_t onAllDesktops = 0xFFFFFFFF;
  setProperty<1>(toolkit_, window, atoms.quillmarkPanel, XCB_ATOM_CARDINAL, {1});
  setProperty<1>(toolkit_, window, atoms.netWmDesktop, XCB_ATOM_CARDINAL, {onAllDesktops});
  setProperty<4>(
      toolkit_, window, atoms.netWmState, XCB_ATOM_ATOM,
      {atoms.netWmStateAbove, atoms.netWmStateSticky, atoms.netWmStateSkipTaskbar, atoms.netWmStateSkipPager});
}

void X11WindowHints::setShadow(QWidget& window, int margin) {
  const qreal scale = window.devicePixelRatioF();
  const auto pixels = static_cast<std::uint32_t>(qRound(margin * scale));
  setProperty<4>(toolkit_, window, connection_.atoms().gtkFrameExtents, XCB_ATOM_CARDINAL,
                 {pixels, pixels, pixels, pixels});
  constexpr xcb_shape_kind_t input = 2;  // ShapeInput of the Shape extension
  const QSize size = window.size() * scale;
  const xcb_rectangle_t inside{static_cast<std::int16_t>(pixels), static_cast<std::int16_t>(pixels),
                               static_cast<std::uint16_t>(std::max(0, size.width() - 2 * int(pixels))),
                               static_cast<std::uint16_t>(std::max(0, size.height() - 2 * int(pixels)))};
  const xcb_xfixes_region_t region = xcb_generate_id(toolkit_);
  xcb_xfixes_create_region(toolkit_, region, 1, &inside);
  xcb_xfixes_set_window_shape_region(toolkit_, static_cast<xcb_window_t>(window.winId()), input, 0, 0,
                                     margin > 0 ? region : XCB_NONE);
  xcb_xfixes_destroy_region(toolkit_, region);
}

void X11WindowHints::bringToFront(QWidget& window) {
  WindowHints::bringToFront(window);
  // The toolkit's request counts as an application's, with the time of the last event in a window of ours, which can be
  // hours ago. A task bar's request without a time is not compared with the user's last input.
  connection_.askToActivate(static_cast<xcb_window_t>(window.winId()), XCB_CURRENT_TIME, toolkit_);
}

void X11WindowHints::followTrayManager() {
  auto* const xcb = connection_.xcb();
  const auto* const fixes = xcb_get_extension_data(xcb, &xcb_xfixes_id);
  if (fixes == nullptr || fixes->present == 0) {
    return;
  }
  xcb_discard_reply(xcb, xcb_xfixes_query_version(xcb, 5, 0).sequence);
  const xcb_atom_t selection = connection_.atoms().systemTray;
  xcb_xfixes_select_selection_input(xcb, connection_.root(), selection,
                                    XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                        XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                        XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
  selectionEvents_ = connection_.onEvent(
      static_cast<std::uint8_t>(fixes->first_event + XCB_XFIXES_SELECTION_NOTIFY), [this](const xcb_generic_event_t&) {
        if (const bool running = hasOwner(connection_.atoms().systemTray); running != trayManagerRunning_) {
          trayManagerRunning_ = running;
          trayManagerChanged.emit();
        }
      });
  trayManagerRunning_ = hasOwner(selection);
}

std::unique_ptr<WindowHints> makeX11WindowHints(X11Connection& connection) {
  const auto* const application = qApp->nativeInterface<QNativeInterface::QX11Application>();
  // The toolkit's off-screen platform has the interface, but no connection.
  auto* const toolkit = application ? application->connection() : nullptr;
  return toolkit ? std::make_unique<X11WindowHints>(connection, toolkit) : std::make_unique<WindowHints>();
}

}  // namespace quillmark
