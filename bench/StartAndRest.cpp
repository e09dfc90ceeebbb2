#include <sstream>
#include <stdexcept>
#include <thread>

#include "base/Log.h"
#include "bench/Measurements.h"
#include "bench/Stores.h"
#include "support/LiveDesktop.h"

namespace quillmark::bench {
namespace {

using namespace std::chrono_literals;

/// The number after a label in a file of /proc.
long numberIn(const std::filesystem::path& file, std::string_view label) {
  std::istringstream lines(readFile(file));
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with(label)) {
      return std::stol(line.substr(label.size()));
    }
  }
  throw std::runtime_error(file.string() + " does not tell " + std::string(label));
}

/// How often the threads of a process have gone to sleep so far, which is how often they were woken.
long wakeUps(pid_t process) {
  long sum = 0;
  for (const auto& thread : std::filesystem::directory_iterator("/proc/" + std::to_string(process) + "/task")) {
    sum += numberIn(thread.path() / "status", "voluntary_ctxt_switches:");
  }
  return sum;
}

void measureStarts(LiveDesktop& desk, const StoreSize& size, int runs, Figures& figures) {
  desk.endQuillmark();
  fillStore(desk.data(), size);
  std::vector<double> starts;
  std::vector<double> mains;
  for (int run = 0; run <= runs; ++run) {
    const auto before = now();
    desk.startQuillmark();
    const auto ready = desk.trace().momentOf(trace::ready);
    const auto started = desk.trace().momentOf(trace::processStarted);
    if (!ready || !started) {
      throw std::runtime_error("no trace of the start");
    }
    if (run > 0) {  // the first run reads the programs from the disk
      starts.push_back(millisecondsBetween(before, *ready));
      mains.push_back(millisecondsBetween(*started, *ready));
    }
    desk.endQuillmark();
  }
  figures.add({"start -> ready, with " + std::to_string(size.commands) + " commands", "ms", starts, 150});
  figures.add({"main() -> ready", "ms", mains, std::nullopt});
}

}  // namespace

void measureStartAndRest(const BuildTree& tree, int runs, Figures& figures) {
  setLogSink([](std::string_view) {});
  LiveDesktop desk(tree.desktop(), 1);  // nothing listens there, and no request is made
  measureStarts(desk, largeStore, runs, figures);
  std::filesystem::remove_all(desk.data());
  prepareData(desk.data());
  measureStarts(desk, ordinaryStore, runs, figures);
  desk.startQuillmark();

  std::this_thread::sleep_for(5s);
  const std::filesystem::path status = "/proc/" + std::to_string(desk.quillmarkPid()) + "/status";
  const auto megabytes = [&](const char* label) { return static_cast<double>(numberIn(status, label)) / 1024; };
  figures.add({"memory at rest, resident", "MB", {megabytes("VmRSS:")}, 45});
  figures.add({"of it the program's own (RssAnon)", "MB", {megabytes("RssAnon:")}, std::nullopt});

  constexpr auto watched = 20s;
  const auto before = wakeUps(desk.quillmarkPid());
  std::this_thread::sleep_for(watched);
  const auto woken = static_cast<double>(wakeUps(desk.quillmarkPid()) - before);
  figures.add({"wake-ups at rest", "per s", {woken / static_cast<double>(watched.count())}, 0});
  setLogSink({});
}

}  // namespace quillmark::bench
