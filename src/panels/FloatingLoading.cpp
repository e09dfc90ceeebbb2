#include "panels/FloatingLoading.h"

namespace quillmark {

void FloatingLoading::show() {
  positionUpdateTimer_.cancel();
  // After the calling block: a run posts its copy key in it, which must not wait for a window to open.
  positionUpdateTimer_ = queue_.after(Duration::zero(), lifetime_.guard([this] {
    follow();
    window_.orderFront();
    positionUpdateTimer_ = queue_.every(positionUpdateInterval, lifetime_.guard([this] { follow(); }));
  }));
}

void FloatingLoading::hide() {
  positionUpdateTimer_.cancel();
  window_.close();
}

void FloatingLoading::follow() {
  // Without a pointer the indicator stays where it is.
  if (const auto mouse = screens_.mouseLocation()) {
    // Its bottom edge lies as far below the pointer as its left edge lies to the right of it.
    window_.moveTopLeft({mouse->x + distance, mouse->y + distance - side});
  }
}

}  // namespace quillmark
