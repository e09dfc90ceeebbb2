#include <sstream>
#include <stdexcept>
#include <thread>

#include "base/Log.h"
#include "bench/Measurements.h"
#include "bench/Stores.h"
#include "platform/posix/SqliteUserDefaults.h"
#include "support/LiveDesktop.h"

namespace quillmark::bench {
namespace {

using namespace std::chrono_literals;

/// Pretends to be a compositor, so that panels have their shadows and rounded corners, which take longer to draw.
void pretendCompositor(XSession& session) {
  const auto window = xcb_generate_id(session.connection());
  xcb_create_window(session.connection(), XCB_COPY_FROM_PARENT, window, session.root(), 0, 0, 1, 1, 0,
                    XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
  xcb_set_selection_owner(session.connection(), window, session.atom("_NET_WM_CM_S0"), XCB_CURRENT_TIME);
  xcb_flush(session.connection());
}

/// Opens the command menu by its hot key, waits until it is drawn and takes keys, and closes it again. Returns the
/// milliseconds from the release.
double openMenu(LiveDesktop& desk) {
  const auto before = desk.session().activeWindow();
  desk.trace().startAnew();
  desk.triggerHotKey();
  const auto moment = [&](trace::Stage stage) {
    if (!waitUntil([&] { return desk.trace().momentOf(stage).has_value(); })) {
      throw std::runtime_error(std::string("the command menu does not get so far: ") + stage.name);
    }
    return *desk.trace().momentOf(stage);
  };
  const auto released = moment(trace::hotKeyReleased);
  const auto ready = std::max(moment(trace::panelDrawn), moment(trace::panelHasKeyboard));
  desk.session().tap({"Escape"});
  if (!waitUntil([&] { return desk.session().activeWindow() == before; })) {
    throw std::runtime_error("the command menu does not close");
  }
  return millisecondsBetween(released, ready);
}

void measureCommandMenu(const BuildTree& tree, int runs, Figures& figures) {
  LiveDesktop desk(tree.desktop(), 1);  // nothing listens there, and no request is made
  pretendCompositor(desk.session());
  desk.endQuillmark();
  {
    SqliteUserDefaults defaults(desk.data() / "defaults.sqlite");
    const std::string prefix = "KeyboardShortcuts_";
    const auto combination = defaults.get<std::string>(prefix + "fixGrammar");
    defaults.remove(prefix + "fixGrammar");
    if (!combination || !defaults.set(prefix + "commandMenu", *combination)) {
      throw std::runtime_error("the menu gets no hot key");
    }
  }
  fillStore(desk.data(), ordinaryStore);
  const Editor editor(desk, "mousepad");
  std::vector<double> first;
  std::vector<double> later;
  for (int run = 0; run <= runs; ++run) {
    desk.startQuillmark();
    std::this_thread::sleep_for(500ms);  // lets the work after a start finish
    const double firstTime = openMenu(desk);
    const double laterTime = openMenu(desk);
    if (run > 0) {  // the first run reads the program from the disk
      first.push_back(firstTime);
      later.push_back(laterTime);
    }
    desk.endQuillmark();
  }
  figures.add({std::string(trace::hotKeyReleased.name) + " -> command menu, first time", "ms", std::move(first), 40});
  figures.add({std::string(trace::hotKeyReleased.name) + " -> command menu, later", "ms", std::move(later), 20});
}

}  // namespace

void measurePanels(const BuildTree& tree, int runs, Figures& figures) {
  setLogSink([](std::string_view) {});
  measureCommandMenu(tree, runs, figures);
  XSession session;
  pretendCompositor(session);
  const Process::Streams streams{.output = session.home() / "figures", .errors = session.home() / "errors"};
  Process program({tree.panels(), "--runs", std::to_string(runs)}, session.environment(), streams);
  if (program.exitStatus(30min) != 0) {
    throw std::runtime_error("the panels are not measured: " + readFile(streams.errors));
  }
  std::istringstream lines(readFile(streams.output));
  for (std::string line; std::getline(lines, line);) {
    figures.add(figureOf(parseJson(line)));
  }
  setLogSink({});
}

}  // namespace quillmark::bench
