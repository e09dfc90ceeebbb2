#include <algorithm>
#include <cstdio>
#include <exception>
#include <fstream>

#include <CLI/CLI.hpp>

#include "bench/Measurements.h"

int main(int argc, char** argv) {
  using namespace quillmark;
  using namespace quillmark::bench;

  CLI::App app{"Measures the built program on a screen of its own. The goals are for an idle machine.",
               "quillmark-bench"};
  BuildTree tree;
  int runs = 30;
  std::filesystem::path out = "build/bench";
  std::vector<std::string> parts{"runs", "start", "command-line", "stores", "streams", "comparison", "panels"};
  app.add_option("--build", tree.root, "The build tree")->required()->check(CLI::ExistingDirectory);
  app.add_option("--runs", runs, "Runs for each figure")->check(CLI::PositiveNumber)->capture_default_str();
  app.add_option("--out", out, "Directory for report.json")->capture_default_str();
  app.add_option("--only", parts,
                 "Some of the measurements: runs, start, command-line, stores, streams, comparison, "
                 "panels")
      ->check(CLI::IsMember(parts));
  CLI11_PARSE(app, argc, argv);
  tree.root = std::filesystem::absolute(tree.root);

  Figures figures;
  try {
    const auto wanted = [&](const char* part) { return std::find(parts.begin(), parts.end(), part) != parts.end(); };
    if (wanted("stores")) {
      measureStores(runs, figures);
    }
    if (wanted("streams")) {
      measureStreams(runs, figures);
    }
    if (wanted("comparison")) {
      measureComparison(runs, figures);
    }
    if (wanted("command-line")) {
      measureCommandLine(tree, runs, figures);
    }
    if (wanted("start")) {
      measureStartAndRest(tree, runs, figures);
    }
    if (wanted("panels")) {
      measurePanels(tree, runs, figures);
    }
    if (wanted("runs")) {
      measureRuns(tree, runs, figures);
    }
  } catch (const std::exception& error) {
    std::fprintf(stderr, "quillmark-bench: %s\n", error.what());
    return 1;
  }
  figures.print();
  std::filesystem::create_directories(out);
  std::ofstream(out / "report.json") << figures.report().dump(2) << '\n';
  return 0;
}
