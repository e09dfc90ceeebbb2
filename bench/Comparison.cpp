#include <functional>
#include <random>
#include <stdexcept>

#include "bench/Measurements.h"
#include "panels/review/TextComparison.h"
#include "support/Process.h"
#include "support/TemporaryDirectory.h"
#include "support/Trace.h"

namespace quillmark::bench {
namespace {

constexpr int wordCount = 10'000;

/// A text of made-up words, in sentences and paragraphs, and the same reworded as a model would: one word in ten is
/// replaced, lacks a letter, is removed or gets a neighbour.
struct Pair {
  std::string original;
  std::string improved;
};

Pair makePair(const std::vector<std::string>& letters) {
  std::mt19937 random(20'261'123);
  const auto below = [&random](std::size_t limit) { return random() % limit; };
  const auto word = [&] {
    std::vector<std::string> result(2 + below(8));
    std::ranges::generate(result, [&] { return letters[below(letters.size())]; });
    return result;
  };
  const auto joined = [](const std::vector<std::string>& pieces) {
    std::string result;
    for (const auto& piece : pieces) {
      result += piece;
    }
    return result;
  };
  Pair pair;
  for (int i = 1; i <= wordCount; ++i) {
    auto each = word();
    const char* const end = i % 90 == 0 ? ".\n\n" : i % 15 == 0 ? ". " : i % 7 == 0 ? ", " : " ";
    pair.original += joined(each) + end;
    switch (below(40)) {
      case 0:
        each = word();
        break;
      case 1:
        each.pop_back();
        break;
      case 2:
        each.clear();
        break;
      case 3:
        pair.improved += joined(word()) + " ";
        break;
      default:
        break;
    }
    pair.improved += joined(each) + end;
  }
  return pair;
}

std::vector<double> timesOfProgram(int runs, const std::vector<std::string>& command) {
  return timesOf(runs, [&] {
    Process program(command, {{"PATH", "/usr/bin:/bin"}, {"HOME", "/nonexistent"}, {"LANG", "C.UTF-8"}}, {});
    if (program.exitStatus().value_or(2) > 1) {
      throw std::runtime_error(command.front() + " can't compare the texts");
    }
  });
}

}  // namespace

void measureComparison(int runs, Figures& figures) {
  const std::pair<const char*, std::vector<std::string>> scripts[] = {
      {"Latin", {"a", "b", "c", "d", "e", "i", "l", "m", "n", "o", "r", "s", "t", "u", "\u00e9", "\u00fc"}},
      {"Cyrillic",
       {"\u0430", "\u0431", "\u0432", "\u0434", "\u0435", "\u0438", "\u043a", "\u043b", "\u043e", "\u0442"}},
      {"Devanagari", {"\u0915\u093f", "\u0924\u093e", "\u0928", "\u092e\u0947", "\u0930\u094d\u092e", "\u0938\u0940"}},
      {"emoji", {"\U0001F469\u200D\U0001F4BB", "\U0001F44D\U0001F3FD", "\U0001F1E9\U0001F1EA", "e\u0301", "x"}},
  };
  for (const auto& [name, letters] : scripts) {
    const Pair pair = makePair(letters);
    const bool isLatin = std::string(name) == "Latin";
    const std::string what = std::string("two texts of 10,000 words, ") + name;
    if (isLatin) {
      figures.add({what + ", by lines", "ms", timesOf(runs, [&] { calculateLineDiff(pair.original, pair.improved); }),
                   std::nullopt});
      figures.add({what + ", by words", "ms", timesOf(runs, [&] { calculateWordDiff(pair.original, pair.improved); }),
                   std::nullopt});
    }
    figures.add({what + ", both", "ms",
                 timesOf(runs,
                         [&] {
                           calculateLineDiff(pair.original, pair.improved);
                           calculateWordDiff(pair.original, pair.improved);
                         }),
                 isLatin ? 5 : 20});
    if (isLatin) {
      const TemporaryDirectory files;
      writeFile(files / "original", pair.original);
      writeFile(files / "improved", pair.improved);
      figures.add(
          {"the same, git diff --word-diff", "ms",
           timesOfProgram(runs, {"git", "diff", "--no-index", "--word-diff", files / "original", files / "improved"}),
           std::nullopt});
      figures.add({"the same, wdiff", "ms", timesOfProgram(runs, {"wdiff", files / "original", files / "improved"}),
                   std::nullopt});
    }
  }
}

}  // namespace quillmark::bench
