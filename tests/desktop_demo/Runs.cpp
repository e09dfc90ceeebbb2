#include "desktop_demo/Runs.h"

#include <algorithm>
#include <fstream>
#include <stdexcept>
#include <thread>

#include "base/Json.h"
#include "commands/CustomPromptStore.h"
#include "platform/posix/SqliteUserDefaults.h"

namespace quillmark::demo {
namespace {

using namespace std::chrono_literals;

constexpr auto answerDeadline = 15s;
constexpr int runsPerCase = 10;

/// Waits for the corrected text after the hot key.
Outcome awaitCorrection(LiveDesktop& desk, Editor& editor, const std::string& expected,
                        std::chrono::milliseconds deadline, Latencies* latencies = nullptr) {
  if (!waitUntil([&] { return desk.trace().momentOf(trace::pasteKeyPosted).has_value(); }, deadline)) {
    return failed(desk, "nothing was pasted; " + marksOf(desk.trace()));
  }
  if (!editor.savesAs(expected, deadline)) {
    return failed(desk, "expected " + shown(expected) + ", saved " + shown(editor.fileContents()));
  }
  if (latencies != nullptr) {
    latencies->add(desk.trace(), now());
  }
  return {true, shown(expected)};
}

/// Triggers with nothing selected: no text may be sent, least of all the old clipboard.
Outcome runWithoutSelection(LiveDesktop& desk, Editor& editor) {
  const auto before = editor.fileContents();
  editor.deselect();
  desk.trace().startAnew();
  desk.triggerHotKey();
  if (!waitUntil([&] { return desk.trace().momentOf(trace::copyKeyPosted).has_value(); }, 5s)) {
    return failed(desk, "the hot key was not taken; " + marksOf(desk.trace()));
  }
  // Far longer than a copy takes.
  if (waitUntil([&] { return desk.trace().momentOf(trace::requestSent).has_value(); }, 2s)) {
    return failed(desk, "a text was sent though nothing was selected");
  }
  // One more letter, so that the editor has something to save.
  desk.session().type("x");
  if (!editor.savesAs(before + "x", 5s)) {
    return failed(desk, "the text changed though nothing was selected: " + shown(editor.fileContents()));
  }
  return {true, ""};
}

Outcome manyRuns(LiveDesktop& desk, Editor& editor, int count, const Trigger& trigger = &LiveDesktop::triggerHotKey) {
  for (int number = 0; number < count; ++number) {
    if (auto outcome = runOnce(desk, editor, number, trigger); !outcome.passed) {
      return {false, "run " + std::to_string(number + 1) + ": " + outcome.reason};
    }
  }
  return {true, std::to_string(count) + " runs"};
}

/// Fills a clipboard manager's history, then checks whether it gets between us and the editor. `isAtWork` says whether
/// the manager has noticed what the owner put there.
Outcome withClipboardManager(const Programs& programs, const std::string& editorKind,
                             const std::vector<std::string>& command,
                             const std::function<bool(LiveDesktop&, Process& manager)>& isAtWork) {
  LiveDesktop desk(programs);
  auto manager = desk.session().start(command, desk.home() / "manager.log");
  std::this_thread::sleep_for(2s);
  std::unique_ptr<Process> owner;
  for (const auto* entry : {"an old secret", "old entry of teh clipboard"}) {
    const auto file = desk.home() / "entry";
    std::ofstream(file) << entry;
    owner = desk.session().start({"xclip", "-selection", "clipboard", "-quiet", "-in", file});
    std::this_thread::sleep_for(500ms);
  }
  if (!manager->running() || !waitUntil([&] { return isAtWork(desk, *manager); }, 10s)) {
    return {false, "the clipboard manager is not at work: nothing would be proved"};
  }
  if (!manager->running()) {
    manager = desk.session().start(command, desk.home() / "manager.log");
    std::this_thread::sleep_for(2s);
  }
  Editor editor(desk, editorKind);
  if (auto outcome = manyRuns(desk, editor, runsPerCase); !outcome.passed) {
    return outcome;
  }
  for (int i = 0; i < 3; ++i) {
    if (auto outcome = runWithoutSelection(desk, editor); !outcome.passed) {
      return outcome;
    }
  }
  if (!manager->running()) {
    return {false, "the clipboard manager ended meanwhile"};
  }
  return {true, std::to_string(runsPerCase) + " runs with a selection, 3 without"};
}

Outcome copyq(const Programs& programs, const std::string& editorKind) {
  return withClipboardManager(programs, editorKind, {"copyq"}, [](LiveDesktop& desk, Process&) {
    return desk.session().run({"sh", "-c", "test \"$(copyq size)\" -ge 2"}) == 0;
  });
}

/// Clipman reveals its history only in the file that it writes on exit, so another instance of it runs first.
Outcome clipman(const Programs& programs, const std::string& editorKind) {
  return withClipboardManager(programs, editorKind, {"xfce4-clipman"}, [](LiveDesktop& desk, Process& manager) {
    manager.end();
    return desk.session().run({"grep", "-q", "old entry", desk.home() / ".cache/xfce4/clipman/textsrc"}) == 0;
  });
}

/// What a key of the desktop's own settings would do, and what a second start of the program does.
Outcome trigger(const Programs& programs, const std::string& editorKind) {
  LiveDesktop desk(programs);
  Editor editor(desk, editorKind);
  const auto outcome = manyRuns(desk, editor, runsPerCase, [&](LiveDesktop& at) {
    if (at.session().run({programs.commandLine, "trigger", "fix-grammar-spelling"}) != 0) {
      throw std::runtime_error("the running program did not take the trigger");
    }
  });
  if (!outcome.passed) {
    return outcome;
  }
  if (desk.session().run({programs.commandLine, "trigger", "no-such-command"}) == 0) {
    return {false, "a trigger of a command that does not exist was taken"};
  }
  if (desk.session().run({programs.commandLine, "--data-dir", desk.data()}) != 0 || !desk.quillmarkRuns()) {
    return failed(desk, "a second start did not hand over to the first");
  }
  return outcome;
}

/// A shortcut of a command of the user's own, stored by another program: it works at once, and after a restart.
Outcome shortcuts(const Programs& programs, const std::string& editorKind) {
  TestHttpServer backend;
  backend.answerOthers([](const ReceivedRequest& request) {
    if (!request.target.ends_with("/completion")) {
      return Answer::json(200, R"({"success":true})");  // the counts, sent some time after a run
    }
    return completion(request.body.find("like a pirate") == std::string::npos ? "another command" : "arr");
  });
  LiveDesktop desk(programs.quillmark, backend.port());
  desk.endQuillmark();
  const auto pirate =
      Command::make("Pirate", std::nullopt, "Say it like a pirate", std::nullopt, CommandCategory::writing);
  {
    SqliteUserDefaults defaults(desk.data() / "defaults.sqlite");
    CustomPromptStore store(defaults);
    store.load();
    (void)store.add(pirate);
  }
  desk.startQuillmark();
  if (desk.session().run({programs.commandLine, "--data-dir", desk.data(), "defaults", "write",
                          "KeyboardShortcuts_" + pirate.shortcutName(), "string",
                          R"({"carbonKeyCode":40,"carbonModifiers":6144})"}) != 0) {
    return {false, "the shortcut can't be stored"};
  }
  Editor editor(desk, editorKind);
  for (const std::string text : {"as set", "after a restart"}) {
    editor.write(text);
    editor.selectAll();
    desk.trace().startAnew();
    desk.session().tap({"Control_L", "Alt_L", "k"});
    if (const auto outcome = awaitCorrection(desk, editor, "arr", answerDeadline); !outcome.passed) {
      return {false, text + ": " + outcome.reason};
    }
    if (!desk.quillmarkEndsWell()) {
      return failed(desk, "Quillmark did not end well");
    }
    desk.startQuillmark();
    editor.focus();
  }
  const auto requests = backend.waitForRequests(2);
  const auto runs =
      std::ranges::count_if(requests, [](const auto& each) { return each.target.ends_with("/completion"); });
  return {runs == 2, std::to_string(runs) + " requests of 2 runs"};
}

}  // namespace

Answer completion(const std::string& content) {
  const Json message = {{"role", "assistant"}, {"content", content}};
  const Json choices = Json::array({{{"index", 0}, {"message", message}}});
  return Answer::json(200,
                      toText({{"model", "m"}, {"object", "chat.completion"}, {"created", 1}, {"choices", choices}}));
}

Outcome failed(LiveDesktop& desk, const std::string& reason) {
  return {false, desk.quillmarkRuns() ? reason : reason + "; Quillmark has ended: " + desk.quillmarkLog()};
}

std::string marksOf(const Trace& trace) {
  std::string events;
  for (const auto& mark : trace.later()) {
    events += (events.empty() ? "" : ", ") + mark.stage;
  }
  return events.empty() ? "no trace" : "trace: " + events;
}

Outcome runOnce(LiveDesktop& desk, Editor& editor, int number, const Trigger& trigger, Latencies* latencies) {
  const auto sample = sampleText(number);
  editor.write(sample.typed);
  editor.selectAll();
  desk.trace().startAnew();
  trigger(desk);
  return awaitCorrection(desk, editor, sample.corrected, answerDeadline, latencies);
}

Outcome takePictures(const Programs& programs, const std::string& editorKind, const std::filesystem::path& directory) {
  LiveDesktop desk(programs, 1500ms);
  Editor editor(desk, editorKind);
  const auto sample = sampleText(2);
  editor.write(sample.typed);
  editor.selectAll();
  desk.takePicture(directory / "before.png");
  desk.trace().startAnew();
  desk.triggerHotKey();
  if (!waitUntil([&] { return desk.trace().momentOf(trace::requestSent).has_value(); }, answerDeadline)) {
    return failed(desk, "no request was sent; " + marksOf(desk.trace()));
  }
  std::this_thread::sleep_for(500ms);  // into the middle of the service's delay
  desk.takePicture(directory / "during.png");
  if (desk.trace().momentOf(trace::answerReceived)) {
    return {false, "the answer came before the picture of the waiting"};
  }
  auto outcome = awaitCorrection(desk, editor, sample.corrected, answerDeadline);
  desk.takePicture(directory / "after.png");
  return outcome;
}

const std::vector<Case>& cases() {
  static const std::vector<Case> all = {
      {"copyq", "beside the clipboard manager CopyQ", copyq},
      {"clipman", "beside the clipboard manager Clipman", clipman},
      {"trigger", "runs asked for on the command line", trigger},
      {"shortcuts", "a shortcut that another program stores for a command of the user's own", shortcuts},
      {"review", "30 reviews in a row, through all views, applied by Return", reviewRuns},
      {"review-endings", "copy and discard", reviewEndings},
      {"menu", "the command menu by keyboard and mouse, freestyle, closed by a click elsewhere", commandMenu},
  };
  return all;
}

}  // namespace quillmark::demo
