#include <cstdio>
#include <exception>
#include <fstream>

#include <CLI/CLI.hpp>

#include "desktop_demo/Runs.h"

namespace {

using namespace quillmark;
using namespace quillmark::demo;

Outcome guarded(const std::function<Outcome()>& run) {
  try {
    return run();
  } catch (const std::exception& error) {
    return {false, error.what()};
  }
}

void print(const std::string& line) {
  std::puts(line.c_str());
  std::fflush(stdout);
}

bool runCase(const Case& one, const Programs& programs, const std::string& editor) {
  const auto outcome = guarded([&] { return one.run(programs, editor); });
  print("case " + std::string(one.name) + ": " + (outcome.passed ? "passed" : "failed") + ": " + outcome.reason);
  return outcome.passed;
}

int runEditor(const Programs& programs, const std::string& editorKind, int runs, const std::filesystem::path& out) {
  std::filesystem::create_directories(out);
  const auto pictures = guarded([&] { return takePictures(programs, editorKind, out); });
  print(std::string("pictures: ") + (pictures.passed ? "taken" : "failed: " + pictures.reason));

  int passed = 0;
  int begun = 0;
  Latencies latencies;
  const auto session = guarded([&]() -> Outcome {
    LiveDesktop desk(programs);
    Editor editor(desk, editorKind);
    for (; begun < runs;) {
      ++begun;
      const auto outcome =
          guarded([&] { return runOnce(desk, editor, begun, &LiveDesktop::triggerHotKey, &latencies); });
      passed += outcome.passed ? 1 : 0;
      print("run " + std::to_string(begun) + ": " + (outcome.passed ? "passed: " : "failed: ") + outcome.reason);
    }
    return desk.quillmarkEndsWell() ? Outcome{true, ""}
                                    : Outcome{false, "Quillmark did not end well: " + desk.quillmarkLog()};
  });
  if (!session.passed) {
    print("the session failed: " + session.reason);
  }
  const int failed = runs - passed;
  const Json report = {{"editor", editorKind},
                       {"runs", runs},
                       {"passed", passed},
                       {"failed", failed},
                       {"pictures", pictures.passed},
                       {"milliseconds", latencies.report()}};
  std::ofstream(out / "report.json") << report.dump(2) << '\n';
  print(std::to_string(passed) + " passed, " + std::to_string(failed) + " failed");
  return failed == 0 && pictures.passed && session.passed ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app{
      "Drives Quillmark in a real editor on a screen of its own: types texts with spelling mistakes, presses the hot "
      "key, and compares what the editor saves.",
      "quillmark-demo"};
  std::string editor = "mousepad";
  std::string caseName;
  int runs = 10;
  Programs programs;
  std::filesystem::path out = "build/demo";
  std::vector<std::string> names{"all"};
  std::string about = "A special situation instead of the ordinary runs:";
  for (const auto& one : cases()) {
    names.emplace_back(one.name);
    about += "\n  " + std::string(one.name) + ": " + std::string(one.about);
  }
  app.add_option("--editor", editor, "The editor")
      ->check(CLI::IsMember({"mousepad", "featherpad"}))
      ->capture_default_str();
  app.add_option("--runs", runs, "Runs in one session")->check(CLI::PositiveNumber)->capture_default_str();
  app.add_option("--program", programs.quillmark, "Quillmark's desktop program")->required()->check(CLI::ExistingFile);
  app.add_option("--command-line", programs.commandLine, "Quillmark's command-line program")
      ->required()
      ->check(CLI::ExistingFile);
  app.add_option("--service", programs.service, "The local service")->required()->check(CLI::ExistingFile);
  app.add_option("--out", out, "Directory for report.json and the pictures")->capture_default_str();
  app.add_option("--case", caseName, about)->check(CLI::IsMember(names));
  CLI11_PARSE(app, argc, argv);

  programs.quillmark = std::filesystem::absolute(programs.quillmark);
  programs.commandLine = std::filesystem::absolute(programs.commandLine);
  programs.service = std::filesystem::absolute(programs.service);
  if (caseName.empty()) {
    return runEditor(programs, editor, runs, std::filesystem::absolute(out));
  }
  bool good = true;
  for (const auto& one : cases()) {
    if (caseName == "all" || caseName == one.name) {
      good = runCase(one, programs, editor) && good;
    }
  }
  return good ? 0 : 1;
}
