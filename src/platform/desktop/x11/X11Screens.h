#pragma once

#include "platform/Screens.h"
#include "platform/desktop/x11/X11Connection.h"

namespace quillmark {

/// Monitors by the RandR extension, the primary one first.
class X11Screens : public Screens {
 public:
  /// `scale`: pixels per logical point.
  explicit X11Screens(X11Connection& connection, double scale = 1) : connection_(connection), scale_(scale) {}

  std::vector<Screen> screens() const override;
  std::optional<Point> mouseLocation() const override;

 private:
  std::optional<Rect> workArea() const;
  Rect logical(const Rect& pixels) const;

  X11Connection& connection_;
  double scale_;
};

}  // namespace quillmark
