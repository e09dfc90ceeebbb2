#include "support/Trace.h"

#include <algorithm>
#include <cmath>
#include <ctime>
#include <fstream>

namespace quillmark {
namespace {

constexpr std::string_view released = "hot key released";

/// The stages of a run in their order; each lasts from the mark before it.
constexpr std::string_view stageEnds[] = {released,          "copy key posted",    "pasteboard read", "request sent",
                                          "answer received", "pasteboard written", "paste key posted"};

std::string stageName(std::string_view from, std::string_view to) {
  std::string name(from);
  name += " -> ";
  return name.append(to);
}

/// The smallest value that `share` of all are not above (nearest rank).
double quantile(const std::vector<double>& sorted, double share) {
  const auto rank = static_cast<std::size_t>(std::ceil(share * static_cast<double>(sorted.size())));
  return sorted[std::clamp<std::size_t>(rank, 1, sorted.size()) - 1];
}

}  // namespace

Moment now() {
  timespec time{};
  clock_gettime(CLOCK_MONOTONIC, &time);
  return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

double millisecondsBetween(Moment from, Moment to) { return static_cast<double>((to - from).count()) / 1e6; }

void Trace::startAnew() {
  std::error_code missing;
  const auto size = std::filesystem::file_size(file_, missing);
  start_ = missing ? 0 : size;
}

std::vector<Trace::Mark> Trace::later() const {
  std::vector<Mark> marks;
  std::ifstream file(file_);
  file.seekg(static_cast<std::streamoff>(start_));
  for (std::string line; std::getline(file, line);) {
    if (const auto blank = line.find(' '); blank != std::string::npos) {
      marks.push_back({Moment(std::stoll(line.substr(0, blank))), line.substr(blank + 1)});
    }
  }
  return marks;
}

std::optional<Moment> Trace::momentOf(std::string_view event) const {
  for (const auto& mark : later()) {
    if (mark.event == event) {
      return mark.at;
    }
  }
  return std::nullopt;
}

void Latencies::add(const Trace& trace, Moment saved) {
  std::optional<Moment> before;
  std::string_view beforeName;
  for (const auto stage : stageEnds) {
    const auto at = trace.momentOf(stage);
    if (at && before) {
      milliseconds_[stageName(beforeName, stage)].push_back(millisecondsBetween(*before, *at));
    }
    if (at) {
      before = at;
      beforeName = stage;
    }
  }
  if (const auto start = trace.momentOf(released)) {
    milliseconds_[stageName(released, "file saved")].push_back(millisecondsBetween(*start, saved));
  }
}

Json Latencies::report() const {
  Json stagesReport = Json::object();
  for (const auto& [stage, values] : milliseconds_) {
    const auto spread = spreadOf(values);
    stagesReport[stage] = {{"count", spread.count},
                           {"min", spread.min},
                           {"median", spread.median},
                           {"p95", spread.p95},
                           {"max", spread.max}};
  }
  return stagesReport;
}

Spread spreadOf(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return {values.size(), values.front(), quantile(values, 0.5), quantile(values, 0.95), values.back()};
}

}  // namespace quillmark
