// Draws the panels in this process, on the current display, and writes how long that takes, one figure per line of
// standard output. Started by quillmark-bench.

#include <QEventLoop>
#include <QKeyEvent>
#include <algorithm>
#include <cstdio>
#include <exception>
#include <iterator>
#include <random>
#include <stdexcept>
#include <thread>

#include <CLI/CLI.hpp>

#include "base/Log.h"
#include "bench/Figures.h"
#include "bench/panels/Stage.h"

namespace quillmark::bench {
namespace {

using namespace std::chrono_literals;

constexpr std::size_t chunkSize = 40;

/// A typical answer of a model: headings, paragraphs, lists, quotations. It repeats itself, so that chunks of the same
/// words can be compared wherever they occur.
constexpr std::size_t chunksOfPart = 100;
std::string markdownAnswer(std::size_t chunks) {
  constexpr const char* words[] = {
      "the", "panel",  "shows", "every", "answer",  "while",  "it",        "streams", "from",    "a",   "provider",
      "and", "keeps",  "what",  "was",   "written", "before", "naturally", "with",    "care",    "for", "readers",
      "who", "follow", "each",  "line",  "to",      "its",    "end",       "without", "waiting", "long"};
  std::mt19937 random(20'261'123);
  const auto below = [&random](std::size_t limit) { return random() % limit; };
  const auto someWords = [&](std::size_t count) {
    std::string text;
    for (std::size_t i = 0; i < count; ++i) {
      const std::string word = words[below(std::size(words))];
      const char* const mark = std::array{"**", "*", "`", "", "", "", "", "", "", "", "", ""}[below(12)];
      text.append(i == 0 ? "" : " ").append(mark).append(word).append(mark);
    }
    return text;
  };
  std::string part;
  while (part.size() < chunksOfPart * chunkSize) {
    part += "## " + someWords(4) + "\n\n" + someWords(30 + below(60)) + ".\n\n";
    for (std::size_t i = 0; i < 4; ++i) {
      part += "- " + someWords(6 + below(20)) + "\n";
    }
    part +=
        "\n1. See the [manual](https://example.org/manual)\n2. " + someWords(12) + "\n\n> " + someWords(20) + "\n\n";
    part += someWords(50) + ".\n\n---\n";
  }
  part.resize(chunksOfPart * chunkSize - 1);
  part += '\n';
  std::string text;
  for (std::size_t i = 0; i < chunks; i += chunksOfPart) {
    text += part;
  }
  return text;
}

std::string_view chunkOf(std::string_view text, std::size_t index) { return text.substr(index * chunkSize, chunkSize); }

/// Keys typed into the menu's field over a list of this many commands.
std::vector<Figure> measureSearch(Stage& stage, int runs) {
  constexpr std::size_t commandCount = 2000;
  std::vector<Command> commands;
  constexpr const char* names[] = {"My command", "Überarbeite Absatz", "Команда", "命令", "Réponse à l'élève"};
  for (std::size_t i = 0; i < commandCount; ++i) {
    commands.push_back(Command::make(std::string(names[i % std::size(names)]) + " " + std::to_string(i), std::nullopt,
                                     "Rewrite this text: {{text}}", std::nullopt, CommandCategory::customAction));
  }
  auto& store = stage.app().promptStore();
  (void)store.save([&](auto& list) { list = std::move(commands); }, std::nullopt);
  std::vector<double> first;
  std::vector<double> later;
  const auto type = [&stage](char letter) {
    for (const auto kind : {QEvent::KeyPress, QEvent::KeyRelease}) {
      QKeyEvent event(kind, 0, Qt::NoModifier, QString(QLatin1Char(letter)));
      QCoreApplication::sendEvent(&stage.menu().field(), &event);
    }
  };
  for (int run = 0; run <= runs; ++run) {
    store.buildSearchableCommands();  // a new list, whose names are not folded yet
    stage.openMenu();
    std::vector<double> times;
    for (const char letter : std::string_view("command 17")) {
      times.push_back(stage.drawingTimeOf([&] { type(letter); }));
      stage.settle();
    }
    if (stage.app().commandPanel().view().visibleCommands().size() != 22) {
      throw std::runtime_error("the search finds something else");
    }
    stage.closeMenu();
    if (run > 0) {
      first.push_back(times.front());
      later.insert(later.end(), times.begin() + 1, times.end());
    }
  }
  const std::string what = "menu of " + std::to_string(commandCount) + " commands: ";
  return {{what + "first key -> drawn", "ms", first, 4}, {what + "later key -> drawn", "ms", later, 4}};
}

std::vector<Figure> measureStream(Stage& stage, ReviewViewMode mode, const char* name, int runs) {
  constexpr std::size_t sample = chunksOfPart;
  constexpr std::size_t full = 100;  // from here on, the panel is full
  constexpr std::size_t much = 2600;
  static_assert(full % sample == 0 && much % sample == 0);
  const std::string text = markdownAnswer(much + sample);
  std::vector<double> first;
  std::vector<double> filling;
  std::vector<double> atStart;
  std::vector<double> behindMuch;
  for (int run = 0; run <= runs; ++run) {
    stage.openReview(mode);
    for (std::size_t i = 0; i < much + sample; ++i) {
      if (i == 0 || i == full || i == much) {
        stage.pulse();
      }
      const double time = stage.drawingTimeOf([&] { stage.receive(chunkOf(text, i)); });
      if (run > 0 && (i < full + sample || i >= much)) {
        (i == 0 ? first : i < full ? filling : i < much ? atStart : behindMuch).push_back(time);
      }
      stage.settle();
    }
    stage.closeReview();
  }
  const std::string what = std::string(name) + " answer: ";
  const double growth = spreadOf(behindMuch).median / spreadOf(atStart).median;
  return {{what + "first chunk -> drawn", "ms", first, std::nullopt},
          {what + "chunk of the first 4 KB -> drawn", "ms", filling, std::nullopt},
          {what + "chunk behind 4 KB -> drawn", "ms", atStart, std::nullopt},
          {what + "chunk behind 100 KB -> drawn", "ms", behindMuch, std::nullopt},
          {what + "behind 100 KB to behind 4 KB", "ratio", {growth}, 1.2}};
}

/// Chunks as fast as another thread can push them.
std::vector<Figure> measureFlood(DrawingApplication& application, Stage& stage, ReviewViewMode mode, const char* name,
                                 int runs) {
  constexpr std::size_t chunkCount = 10'000;
  const std::string text = markdownAnswer(chunkCount);
  const auto lines = std::size_t(std::ranges::count(text, '\n')) + 1;
  std::vector<double> longest;
  std::vector<double> whole;
  std::vector<double> frames;
  for (int run = 0; run < runs; ++run) {
    stage.openReview(mode);
    QEventLoop loop;
    std::vector<Moment> drawn{now()};
    application.frameIsDrawn = [&] {
      drawn.push_back(now());
      if (stage.linesOfAnswer() == lines) {
        loop.quit();
      }
    };
    std::thread source([&] {
      for (std::size_t i = 0; i < chunkCount; ++i) {
        stage.receive(chunkOf(text, i));
      }
    });
    loop.exec();
    source.join();
    application.frameIsDrawn = nullptr;
    double gap = 0;
    for (std::size_t i = 1; i < drawn.size(); ++i) {
      gap = std::max(gap, millisecondsBetween(drawn[i - 1], drawn[i]));
    }
    longest.push_back(gap);
    whole.push_back(millisecondsBetween(drawn.front(), drawn.back()));
    frames.push_back(double(drawn.size() - 1));
    stage.closeReview();
  }
  const std::string what = std::string(name) + ", 10,000 chunks at once: ";
  return {{what + "longest frame", "ms", longest, 50},
          {what + "all drawn", "ms", whole, std::nullopt},
          {what + "frames", "frames", frames, std::nullopt}};
}

}  // namespace
}  // namespace quillmark::bench

int main(int argc, char** argv) {
  using namespace quillmark;
  using namespace quillmark::bench;
  CLI::App options{"Measures how fast the panels draw"};
  int runs = 30;
  options.add_option("--runs", runs, "Runs for each figure; streams take a fifth of it")->check(CLI::PositiveNumber);
  CLI11_PARSE(options, argc, argv);

  setLogSink([](std::string_view) {});
  DrawingApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  look::apply({});
  try {
    Stage stage(application);
    const auto write = [](const std::vector<Figure>& figures) {
      for (const Figure& figure : figures) {
        std::puts(toText(toJson(figure)).c_str());
      }
      std::fflush(stdout);
    };
    const int streams = std::max(1, runs / 5);
    write(measureSearch(stage, runs));
    write(measureStream(stage, ReviewViewMode::styled, "styled", streams));
    write(measureStream(stage, ReviewViewMode::text, "plain", streams));
    write(measureFlood(application, stage, ReviewViewMode::styled, "styled", streams));
    write(measureFlood(application, stage, ReviewViewMode::text, "plain", streams));
  } catch (const std::exception& error) {
    std::fprintf(stderr, "quillmark-bench-panels: %s\n", error.what());
    return 1;
  }
  return 0;
}
