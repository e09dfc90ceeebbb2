#pragma once

#include <optional>
#include <vector>

#include "platform/Geometry.h"

namespace quillmark {

struct Screen {
  Rect frame;
  Rect visibleFrame;  ///< without panels and docks
};

/// The screens and the pointer. Main thread only.
class Screens {
 public:
  Screens() = default;
  Screens(const Screens&) = delete;
  Screens& operator=(const Screens&) = delete;
  virtual ~Screens() = default;

  /// The main screen first; empty when there is none.
  virtual std::vector<Screen> screens() const = 0;
  /// The pointer's position; nothing where the window system does not report it.
  virtual std::optional<Point> mouseLocation() const = 0;
};

}  // namespace quillmark
