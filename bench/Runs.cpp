#include <stdexcept>
#include <thread>

#include "bench/Measurements.h"
#include "support/LiveDesktop.h"
#include "support/TestHttpServer.h"

namespace quillmark::bench {
namespace {

using namespace std::chrono_literals;

constexpr const char* corrected = "Corrected ";

/// The answer of a backend that takes no time to think.
Answer answerAtOnce(const ReceivedRequest& request) {
  if (!request.target.ends_with("/completion")) {
    return Answer::json(200, R"({"success":true})");  // the counts, sent some time after a run
  }
  const std::string text = parseJson(request.body).at("messages").back().at("content");
  return Answer::json(
      200,
      toText({{"model", "m"},
              {"object", "chat.completion"},
              {"created", 1},
              {"choices",
               Json::array({{{"index", 0}, {"message", {{"role", "assistant"}, {"content", corrected + text}}}}})}}));
}

/// Saves until the file contains the text, and returns the time of that. The editor first gets a little time to fetch
/// the pasted text: a save that overtook the paste would take as long as the one that counts.
Moment awaitSaved(LiveDesktop& desk, const Editor& editor, const std::string& text) {
  const auto deadline = now() + 20s;
  for (auto nextSave = now() + 8ms; now() < deadline; std::this_thread::sleep_for(500us)) {
    if (editor.fileContents() == text) {
      return now();
    }
    if (now() >= nextSave) {
      desk.session().tap({"Control_L", "s"});
      nextSave = now() + 12ms;
    }
  }
  throw std::runtime_error("a run did not get through: the editor saved " + shown(editor.fileContents()));
}

}  // namespace

void measureRuns(const BuildTree& tree, int runs, Figures& figures) {
  TestHttpServer backend;
  backend.answerOthers(answerAtOnce);
  LiveDesktop desk(tree.desktop(), backend.port());
  Editor editor(desk, "mousepad");
  Latencies latencies;
  std::vector<double> byHand;
  // The first run warms the editor up.
  for (int run = 0; run <= runs; ++run) {
    std::string text = "a text to correct with the number ";
    text += std::to_string(run);
    editor.write(text);
    editor.selectAll();
    desk.trace().startAnew();
    desk.triggerHotKey();
    if (!waitUntil([&] { return desk.trace().momentOf(trace::pasteKeyPosted).has_value(); })) {
      throw std::runtime_error("a run pasted nothing");
    }
    const auto saved = awaitSaved(desk, editor, corrected + text);
    if (run > 0) {
      latencies.add(desk.trace(), saved);
    }
    // The same paste done by hand: that much of a run is the editor's share and the clock's.
    editor.write("something else");
    editor.selectAll();
    const auto before = now();
    desk.session().tap({"Control_L", "v"});
    const auto savedByHand = awaitSaved(desk, editor, corrected + text);
    if (run > 0) {
      byHand.push_back(millisecondsBetween(before, savedByHand));
    }
  }
  const auto add = [&](trace::Stage from, trace::Stage to, std::optional<double> goal) {
    figures.add({nameOf(from, to), "ms", latencies.between(from, to), goal});
  };
  using namespace trace;
  add(hotKeyReleased, copyKeyPosted, 4);
  add(copyKeyPosted, pasteboardRead, std::nullopt);
  add(pasteboardRead, requestSent, 2);
  add(requestSent, answerReceived, std::nullopt);
  add(answerReceived, pasteboardWritten, 4);
  add(pasteboardWritten, pasteKeyPosted, std::nullopt);
  add(hotKeyReleased, Latencies::fileSaved, 230);
  figures.add({"  of it the editor: paste by hand -> file saved", "ms", std::move(byHand), std::nullopt});
}

}  // namespace quillmark::bench
