#pragma once

#include <chrono>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/Json.h"

namespace quillmark::demo {

/// Nanoseconds of the monotonic clock, which programs of one machine share.
using Moment = std::chrono::nanoseconds;
Moment now();

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

 private:
  std::map<std::string, std::vector<double>> milliseconds_;
};

}  // namespace quillmark::demo
