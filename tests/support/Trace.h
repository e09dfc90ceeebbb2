#pragma once

#include <chrono>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "base/Json.h"
#include "base/Trace.h"

namespace quillmark {

/// Nanoseconds of the monotonic clock, which programs of one machine share.
using Moment = std::chrono::nanoseconds;
Moment now();
double millisecondsBetween(Moment from, Moment to);

/// A figure over many runs; quantiles by nearest rank.
struct Spread {
  std::size_t count = 0;
  double min = 0;
  double median = 0;
  double p95 = 0;
  double max = 0;
};
/// Needs at least one value.
Spread spreadOf(std::vector<double> values);

/// What the program wrote into the file that QUILLMARK_TRACE names.
class Trace {
 public:
  struct Mark {
    Moment at;
    std::string stage;  ///< its name
  };

  explicit Trace(std::filesystem::path file) : file_(std::move(file)) {}

  const std::filesystem::path& file() const { return file_; }
  /// From here on, later() returns only what is written from now on.
  void startAnew();
  /// The marks since startAnew(), in the order of the file.
  std::vector<Mark> later() const;
  /// The first such mark.
  std::optional<Moment> momentOf(trace::Stage stage) const;

 private:
  std::filesystem::path file_;
  std::uintmax_t start_ = 0;
};

/// "pasteboard read -> request sent"
std::string nameOf(trace::Stage from, trace::Stage to);

/// The time each stage of the runs took.
class Latencies {
 public:
  /// The end of a run, which the program does not see.
  static constexpr trace::Stage fileSaved{"file saved"};

  /// Adds one run, from its trace and the time at which the saved file was right.
  void add(const Trace& trace, Moment saved);
  /// Per stage, in milliseconds: count, min, median, p95, max. Stages without a run are left out.
  Json report() const;
  /// Milliseconds of each run from one stage to the next one, or from the first to `fileSaved`.
  std::vector<double> between(trace::Stage from, trace::Stage to) const;

 private:
  std::map<std::string, std::vector<double>> milliseconds_;  ///< by nameOf()
};

}  // namespace quillmark
