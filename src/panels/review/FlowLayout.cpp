#include "panels/review/FlowLayout.h"

#include <algorithm>

namespace quillmark {

FlowLayout::Measure FlowLayout::measure(const std::vector<Size>& boxes, std::optional<double> maxWidth) const {
  const double width = maxWidth.value_or(10);
  Measure result;
  result.positions.reserve(boxes.size());
  Point corner;
  double rowHeight = 0;
  for (const Size& box : boxes) {
    if (corner.x > 0 && corner.x + box.width > width) {
      corner = {0, corner.y + rowHeight + spacing};
      rowHeight = 0;
    }
    result.positions.push_back(corner);
    corner.x += box.width + spacing;
    rowHeight = std::max(rowHeight, box.height);
  }
  result.size = {width, corner.y + rowHeight};
  return result;
}

}  // namespace quillmark
