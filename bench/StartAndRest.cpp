#include <sstream>
#include <stdexcept>
#include <thread>

#include "base/Log.h"
#include "bench/Measurements.h"
#include "commands/CustomPromptStore.h"
#include "platform/posix/SqliteUserDefaults.h"
#include "support/Desk.h"

namespace quillmark::bench {
namespace {

using namespace std::chrono_literals;

constexpr std::size_t commandCount = 200;

void fillStore(const std::filesystem::path& data) {
  SqliteUserDefaults defaults(data / "defaults.sqlite");
  CustomPromptStore store(defaults);
  store.load();
  auto list = store.prompts.get();
  while (list.size() < commandCount) {
    std::string name = "My command ";
    name += std::to_string(list.size());
    list.push_back(Command::make(name, std::nullopt, "Rewrite the following text as " + name + ": {{text}}",
                                 std::nullopt, CommandCategory::customAction));
  }
  store.save(std::move(list), std::nullopt);
}

/// The number behind a label of a file in /proc.
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

}  // namespace

void measureStartAndRest(const BuildTree& tree, int runs, Figures& figures) {
  setLogSink([](std::string_view) {});
  Desk desk(tree.desktop(), 1);  // nobody listens there, and nobody is asked
  desk.endQuillmark();
  fillStore(desk.data());

  std::vector<double> starts;
  std::vector<double> mains;
  for (int run = 0; run <= runs; ++run) {
    const auto before = now();
    desk.startQuillmark();
    const auto ready = desk.trace().momentOf("ready");
    const auto started = desk.trace().momentOf("process started");
    if (!ready || !started) {
      throw std::runtime_error("no trace of the start");
    }
    if (run > 0) {  // the first one reads the programs from the disk
      starts.push_back(millisecondsBetween(before, *ready));
      mains.push_back(millisecondsBetween(*started, *ready));
    }
    if (run < runs) {
      desk.endQuillmark();
    }
  }
  figures.add({"start -> ready, with 200 commands", "ms", starts, 150});
  figures.add({"main() -> ready", "ms", mains, std::nullopt});

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
