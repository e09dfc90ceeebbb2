#include "panels/FloatingPanel.h"

#include <algorithm>

namespace quillmark {
namespace {

constexpr double underPointer = 20;
constexpr double assumedWidth = 500;

double right(const Rect& rect) { return rect.origin.x + rect.size.width; }
double bottom(const Rect& rect) { return rect.origin.y + rect.size.height; }

bool contains(const Rect& rect, Point point) {
  return point.x >= rect.origin.x && point.x < right(rect) && point.y >= rect.origin.y && point.y < bottom(rect);
}

}  // namespace

Point placement(ReviewWindowPosition position, Point mouse, const Rect& visible, Size frame,
                std::optional<double> contentWidth) {
  Point corner;
  switch (position) {
    case ReviewWindowPosition::center:
      corner = {visible.origin.x + (visible.size.width - frame.width) / 2,
                visible.origin.y + (visible.size.height - frame.height) / 2};
      break;
    case ReviewWindowPosition::nearMouse:
      corner = {mouse.x - contentWidth.value_or(assumedWidth) / 2, mouse.y + underPointer};
      break;
  }
  // If the panel is larger than the area, its left and top edges stay visible.
  corner.x = std::max(visible.origin.x, std::min(corner.x, right(visible) - frame.width));
  corner.y = std::max(visible.origin.y, std::min(corner.y, bottom(visible) - frame.height));
  return corner;
}

FloatingPanel::FloatingPanel(PanelWindow& window, const Screens& screens, bool canHide)
    : window_(window), screens_(screens) {
  if (canHide) {
    connections_ += window_.resignedMain.connect([this] { close(); });
  }
  connections_ += window_.closedBySystem.connect([this] { close(); });
  connections_ += window_.movedByUser.connect([this] { moved_ = true; });
}

void FloatingPanel::present() {
  place();  // before it is seen, so that it does not jump
  window_.makeKeyAndOrderFront();
  isPresented_.set(true);
}

void FloatingPanel::close() {
  window_.close();  // which may take the keyboard from it and re-enter this function
  if (isPresented_) {
    isPresented_.set(false);
  }
}

void FloatingPanel::place() {
  moved_ = false;
  const auto screens = screens_.screens();
  if (screens.empty()) {
    return;
  }
  const auto mouse = screens_.mouseLocation();
  const auto found =
      mouse ? std::ranges::find_if(screens, [&](const auto& s) { return contains(s.frame, *mouse); }) : screens.end();
  const Screen& screen = found == screens.end() ? screens.front() : *found;
  const Size size = window_.contentSize();
  const auto position = mouse ? windowPosition : ReviewWindowPosition::center;
  window_.moveTopLeft(placement(position, mouse.value_or(Point{}), screen.visibleFrame, size, size.width));
}

void FloatingPanel::placeAgain() {
  if (!moved_) {
    place();
  }
}

std::optional<Rect> FloatingPanel::mainVisibleFrame() const {
  const auto screens = screens_.screens();
  return screens.empty() ? std::nullopt : std::optional(screens.front().visibleFrame);
}

}  // namespace quillmark
