#include "bench/Figures.h"

#include <cstdio>

#include "support/Trace.h"

namespace quillmark::bench {
namespace {

bool isMet(const Figure& figure, const Spread& spread) { return !figure.goal || spread.median <= *figure.goal; }

}  // namespace

std::vector<double> timesOf(int runs, const std::function<void()>& work) {
  std::vector<double> times;
  for (int run = 0; run < runs; ++run) {
    const auto before = now();
    work();
    times.push_back(millisecondsBetween(before, now()));
  }
  return times;
}

Json toJson(const Figure& figure) {
  return {{"figure", figure.name},
          {"unit", figure.unit},
          {"values", figure.values},
          {"goal", figure.goal ? Json(*figure.goal) : Json()}};
}

Figure figureOf(const Json& json) {
  const Json& goal = json.at("goal");
  return {json.at("figure"), json.at("unit"), json.at("values"),
          goal.is_null() ? std::nullopt : std::optional(goal.get<double>())};
}

void Figures::print() const {
  std::printf("%-52s %9s %9s %9s %6s\n", "figure", "median", "p95", "goal", "runs");
  for (const auto& figure : figures_) {
    if (figure.values.empty()) {
      std::printf("%-52s %9s\n", figure.name.c_str(), "none");
      continue;
    }
    const auto spread = spreadOf(figure.values);
    char goal[32] = "";
    if (figure.goal) {
      std::snprintf(goal, sizeof goal, *figure.goal > 0 ? "< %g" : "none", *figure.goal);
    }
    std::printf("%-52s %9.2f %9.2f %9s %6zu%s\n", (figure.name + ", " + figure.unit).c_str(), spread.median, spread.p95,
                goal, spread.count, isMet(figure, spread) ? "" : "  missed");
  }
}

Json Figures::report() const {
  Json list = Json::array();
  for (const auto& figure : figures_) {
    Json entry = {{"figure", figure.name}, {"unit", figure.unit}, {"runs", figure.values.size()}};
    if (figure.goal) {
      entry["goal"] = *figure.goal;
    }
    if (!figure.values.empty()) {
      const auto spread = spreadOf(figure.values);
      entry["min"] = spread.min;
      entry["median"] = spread.median;
      entry["p95"] = spread.p95;
      entry["max"] = spread.max;
      entry["met"] = isMet(figure, spread);
    }
    list.push_back(std::move(entry));
  }
  return list;
}

}  // namespace quillmark::bench
