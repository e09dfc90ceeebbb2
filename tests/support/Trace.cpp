#include "support/Trace.h"

#include <algorithm>
#include <cmath>
#include <ctime>
#include <fstream>

namespace quillmark {
namespace {

/// The stages of a run in their order; each lasts from the mark before it.
constexpr trace::Stage stagesOfRun[] = {trace::hotKeyReleased, trace::copyKeyPosted,  trace::pasteboardRead,
                                        trace::requestSent,    trace::answerReceived, trace::pasteboardWritten,
                                        trace::pasteKeyPosted};

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

std::optional<Moment> Trace::momentOf(trace::Stage stage) const {
  for (const auto& mark : later()) {
    if (mark.stage == stage.name) {
      return mark.at;
    }
  }
  return std::nullopt;
}

std::string nameOf(trace::Stage from, trace::Stage to) { return std::string(from.name) + " -> " + to.name; }

void Latencies::add(const Trace& trace, Moment saved) {
  std::optional<Moment> before;
  trace::Stage stageBefore = trace::hotKeyReleased;
  for (const auto stage : stagesOfRun) {
    const auto at = trace.momentOf(stage);
    if (at && before) {
      milliseconds_[nameOf(stageBefore, stage)].push_back(millisecondsBetween(*before, *at));
    }
    if (at) {
      before = at;
      stageBefore = stage;
    }
  }
  if (const auto start = trace.momentOf(trace::hotKeyReleased)) {
    milliseconds_[nameOf(trace::hotKeyReleased, fileSaved)].push_back(millisecondsBetween(*start, saved));
  }
}

std::vector<double> Latencies::between(trace::Stage from, trace::Stage to) const {
  const auto found = milliseconds_.find(nameOf(from, to));
  return found == milliseconds_.end() ? std::vector<double>() : found->second;
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
