#pragma once

#include <optional>
#include <vector>

#include "platform/Geometry.h"

namespace quillmark {

/// Boxes one beside the other, in rows that break where the next box would be too wide. Boxes of one row share their
/// upper edge; one that is wider than all rows has a row of its own and keeps its width. Pure; any thread.
struct FlowLayout {
  struct Measure {
    Size size;                     ///< as wide as the widest row may be, whatever the boxes fill of it
    std::vector<Point> positions;  ///< of each box's top leading corner, x counted from the leading edge
  };

  /// An unknown width counts as 10.
  Measure measure(const std::vector<Size>& boxes, std::optional<double> maxWidth) const;

  double spacing = 0;  ///< between the boxes of a row, and between rows
};

}  // namespace quillmark
