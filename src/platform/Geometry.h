#pragma once

namespace quillmark {

/// Screen coordinates in logical points: x grows to the right, y grows downwards.
struct Point {
  double x = 0;
  double y = 0;
  friend bool operator==(const Point&, const Point&) = default;
};

struct Size {
  double width = 0;
  double height = 0;
  friend bool operator==(const Size&, const Size&) = default;
};

struct Rect {
  Point origin;  ///< top-left corner
  Size size;
  friend bool operator==(const Rect&, const Rect&) = default;
};

}  // namespace quillmark
