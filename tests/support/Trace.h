#pragma once

#include <chrono>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/Json.h"

namespace quillmark {

/// Nanoseconds of the monotonic clock, which programs of one machine share.
using Moment = std::chrono::nanoseconds;
Moment now();
double millisecondsBetween(Moment from, Moment to);

/// How a figure came out over many runs; quantiles by nearest rank.
struct Spread {
  std::size_t count = 0;
  double min = 0;
  double median = 0;
  double p95 = 0;
  double max = 0;
};
/// Of one value at least.
Spread spreadOf(std::vector<double> values);

/// What the program wrote into the file that QUILLMARK_TRACE names.
class Trace {
 public:
  struct Mark {
    Moment at;
    std::string event;
  };

  explicit Trace(std::filesystem::path file) : file_(std::move(file)) {}

  const std::filesystem::path& file() const { return file_; }
  /// From here on, later() gives what is written from now on.
  void startAnew();
  /// The marks since startAnew(), in the order of the file.
  std::vector<Mark> later() const;
  /// The first such mark.
  std::optional<Moment> momentOf(std::string_view event) const;

 private:
  std::filesystem::path file_;
  std::uintmax_t start_ = 0;
};

/// The time each stage of the runs took.
class Latencies {
 public:
  /// Adds one run, from its trace and the moment in which the saved file was right.
  void add(const Trace& trace, Moment saved);
  /// Per stage, in milliseconds: count, min, median, p95, max. Stages without a run are left out.
  Json report() const;
  /// In milliseconds, by the name of the stage, such as "pasteboard read -> request sent".
  const std::map<std::string, std::vector<double>>& stages() const { return milliseconds_; }

 private:
  std::map<std::string, std::vector<double>> milliseconds_;
};

}  // namespace quillmark
