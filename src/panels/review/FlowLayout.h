#pragma once

#include <optional>
#include <vector>

#include "platform/Geometry.h"

namespace quillmark {

/// Boxes side by side, wrapped to a new row where the next box would not fit. The boxes of a row are aligned at the
/// top; one wider than the rows has a row of its own and keeps its width. Pure; any thread.
struct FlowLayout {
  struct Measure {
    Size size;                     ///< always of the full available width, however much the boxes fill
    std::vector<Point> positions;  ///< of each box's top leading corner, x counted from the leading edge
  };

  /// An unknown width counts as 10.
  Measure measure(const std::vector<Size>& boxes, std::optional<double> maxWidth) const;

  double spacing = 0;  ///< between the boxes of a row, and between rows
};

}  // namespace quillmark
