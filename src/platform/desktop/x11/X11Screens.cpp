#include "platform/desktop/x11/X11Screens.h"

#include <algorithm>

#include <xcb/randr.h>

namespace quillmark {
namespace {

Rect intersection(const Rect& a, const Rect& b) {
  const double left = std::max(a.origin.x, b.origin.x);
  const double top = std::max(a.origin.y, b.origin.y);
  const double right = std::min(a.origin.x + a.size.width, b.origin.x + b.size.width);
  const double bottom = std::min(a.origin.y + a.size.height, b.origin.y + b.size.height);
  return {{left, top}, {std::max(0.0, right - left), std::max(0.0, bottom - top)}};
}

double signedNumber(std::uint32_t value) { return static_cast<std::int32_t>(value); }

}  // namespace

Rect X11Screens::logical(const Rect& pixels) const {
  return {{pixels.origin.x / scale_, pixels.origin.y / scale_},
          {pixels.size.width / scale_, pixels.size.height / scale_}};
}

std::optional<Rect> X11Screens::workArea() const {
  const auto& atoms = connection_.atoms();
  const auto areas =
      connection_.property(connection_.root(), atoms.netWorkArea);  // x, y, width, height of each desktop
  const auto desktop = connection_.property(connection_.root(), atoms.netCurrentDesktop);
  if (!areas || !desktop || desktop->numbers().empty()) {
    return std::nullopt;
  }
  const auto numbers = areas->numbers();
  const std::size_t at = std::size_t{desktop->numbers().front()} * 4;
  if (at + 4 > numbers.size()) {
    return std::nullopt;
  }
  return Rect{{signedNumber(numbers[at]), signedNumber(numbers[at + 1])},
              {signedNumber(numbers[at + 2]), signedNumber(numbers[at + 3])}};
}

std::vector<Screen> X11Screens::screens() const {
  if (!connection_.alive()) {
    return {};
  }
  auto* const xcb = connection_.xcb();
  std::vector<Rect> frames;
  const auto* const randr = xcb_get_extension_data(xcb, &xcb_randr_id);
  if (randr != nullptr && randr->present != 0) {
    // The server behaves as the version that the client has announced.
    xcb_discard_reply(xcb, xcb_randr_query_version(xcb, 1, 5).sequence);
    const auto monitors =
        x11Owned(xcb_randr_get_monitors_reply(xcb, xcb_randr_get_monitors(xcb, connection_.root(), 1), nullptr));
    if (monitors) {
      for (auto it = xcb_randr_get_monitors_monitors_iterator(monitors.get()); it.rem != 0;
           xcb_randr_monitor_info_next(&it)) {
        const auto& monitor = *it.data;
        const Rect frame{{double(monitor.x), double(monitor.y)}, {double(monitor.width), double(monitor.height)}};
        frames.insert(monitor.primary != 0 ? frames.begin() : frames.end(), frame);
      }
    }
  }
  if (frames.empty()) {
    const auto root = x11Owned(xcb_get_geometry_reply(xcb, xcb_get_geometry(xcb, connection_.root()), nullptr));
    if (!root) {
      return {};
    }
    frames.push_back({{0, 0}, {double(root->width), double(root->height)}});
  }

  const auto area = workArea();
  std::vector<Screen> result;
  for (const auto& frame : frames) {
    auto visible = area ? intersection(frame, *area) : frame;
    if (visible.size.width == 0 || visible.size.height == 0) {
      visible = frame;  // some window managers' work area leaves out a whole monitor
    }
    result.push_back({logical(frame), logical(visible)});
  }
  return result;
}

std::optional<Point> X11Screens::mouseLocation() const {
  if (!connection_.alive()) {
    return std::nullopt;
  }
  const auto pointer = x11Owned(
      xcb_query_pointer_reply(connection_.xcb(), xcb_query_pointer(connection_.xcb(), connection_.root()), nullptr));
  if (!pointer || pointer->same_screen == 0) {
    return std::nullopt;
  }
  return Point{pointer->root_x / scale_, pointer->root_y / scale_};
}

}  // namespace quillmark
