#pragma once

#include <filesystem>

#include "bench/Figures.h"

namespace quillmark::bench {

/// The programs in a build tree.
struct BuildTree {
  std::filesystem::path root;
  std::filesystem::path desktop() const { return root / "src/app/quillmark-desktop"; }
  std::filesystem::path commandLine() const { return root / "src/cli/quillmark"; }
  std::filesystem::path panels() const { return root / "bench/quillmark-bench-panels"; }
};

/// Runs a command in a real editor repeatedly, with a backend that answers at once: the stages of a run, and the whole.
void measureRuns(const BuildTree& tree, int runs, Figures& figures);

/// Starts the desktop program repeatedly, with a large store and with an ordinary one, then measures it while idle: its
/// memory and how often it wakes.
void measureStartAndRest(const BuildTree& tree, int runs, Figures& figures);

/// Loads, saves and expands a large store of commands, languages and tones in this process.
void measureStores(int runs, Figures& figures);

/// Long streams through each stream reader, the first piece from the wire to the caller compared with a bare socket,
/// and many concurrent requests.
void measureStreams(int runs, Figures& figures);

/// Compares long texts in several scripts, and the same with two programs that compare words.
void measureComparison(int runs, Figures& figures);

/// Opens the command menu of the desktop program, then draws both panels in a program of their own: keys typed in the
/// menu, and answers that stream into the review panel.
void measurePanels(const BuildTree& tree, int runs, Figures& figures);

/// Starts the command-line program repeatedly and waits for its request to arrive.
void measureCommandLine(const BuildTree& tree, int runs, Figures& figures);

}  // namespace quillmark::bench
