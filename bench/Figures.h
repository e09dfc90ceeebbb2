#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "base/Json.h"

namespace quillmark::bench {

/// The milliseconds that each run of some work takes.
std::vector<double> timesOf(int runs, const std::function<void()>& work);

/// One figure of the program, with what it should be.
struct Figure {
  std::string name;
  std::string unit;            ///< "ms", "MB", "per s"
  std::vector<double> values;  ///< one for each run
  std::optional<double> goal;  ///< the median must not be above it
};

/// The figure as JSON, for other programs.
Json toJson(const Figure& figure);
Figure figureOf(const Json& json);

/// The figures of this program, in the order in which they were measured.
class Figures {
 public:
  void add(Figure figure) { figures_.push_back(std::move(figure)); }

  /// Writes a table to standard output.
  void print() const;
  Json report() const;

 private:
  std::vector<Figure> figures_;
};

}  // namespace quillmark::bench
