#include "desktop_demo/Runs.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <thread>

#include <signal.h>

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

Outcome terminal(const Programs& programs, const std::string&) {
  LiveDesktop desk(programs);
  const auto interrupted = desk.home() / "interrupted";
  const auto ready = desk.home() / "ready";
  const auto script =
      "trap 'touch " + interrupted.string() + "' INT; touch " + ready.string() + "; while :; do sleep 1000; done";
  const auto process = desk.session().start({"xterm", "-e", "sh", "-c", script});
  const auto window = desk.session().waitForWindow("XTerm");
  if (!waitUntil([&] { return std::filesystem::exists(ready); })) {
    return {false, "the shell in the terminal did not start"};
  }
  desk.session().activate(window.id);
  for (int i = 0; i < 3; ++i) {
    desk.trace().startAnew();
    desk.triggerHotKey();
    if (!waitUntil([&] { return desk.trace().momentOf(trace::hotKeyReleased).has_value(); }, 5s)) {
      return failed(desk, "the hot key was not taken; " + marksOf(desk.trace()));
    }
    std::this_thread::sleep_for(1s);
    if (std::filesystem::exists(interrupted)) {
      return failed(desk, "the copy key interrupted the program in the terminal");
    }
  }
  // Counter-check: a real Control+C does arrive there.
  desk.session().tap({"Control_L", "c"});
  if (!waitUntil([&] { return std::filesystem::exists(interrupted); }, 5s)) {
    return {false, "the terminal takes no keys at all: nothing was proved"};
  }
  return {true, "3 triggers, no interrupt"};
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

/// An application that hangs while it owns the clipboard.
Outcome hangingOwner(const Programs& programs, const std::string& editorKind) {
  LiveDesktop desk(programs);
  auto& session = desk.session();
  Editor editor(desk, editorKind);

  const auto entry = desk.home() / "entry";
  std::ofstream(entry) << "text of an application that hangs";
  const auto owner = session.start({"xclip", "-selection", "clipboard", "-quiet", "-in", entry});
  const auto clipboardIsTaken = [&] {
    auto* reply = xcb_get_selection_owner_reply(
        session.connection(), xcb_get_selection_owner(session.connection(), session.atom("CLIPBOARD")), nullptr);
    const bool taken = reply != nullptr && reply->owner != XCB_NONE;
    std::free(reply);
    return taken;
  };
  if (!waitUntil(clipboardIsTaken)) {
    return {false, "nobody took the clipboard"};
  }
  owner->signal(SIGSTOP);
  if (auto outcome = runOnce(desk, editor, 1); !outcome.passed) {
    return {false, "with a stopped owner: " + outcome.reason};
  }
  return {true, "a run worked beside it"};
}

Outcome heldModifiers(const Programs& programs, const std::string& editorKind) {
  LiveDesktop desk(programs);
  Editor editor(desk, editorKind);
  return manyRuns(desk, editor, runsPerCase, [](LiveDesktop& at) {
    at.pressHotKey();
    at.session().release("g");
    std::this_thread::sleep_for(300ms);
    at.releaseHotKeyModifiers();
  });
}

Outcome large(const Programs& programs, const std::string& editorKind) {
  constexpr std::size_t size = 300'000;
  Sample whole;
  for (int number = 0; whole.typed.size() < size; ++number) {
    const auto sample = sampleText(number);
    whole.typed += sample.typed + ".\n";
    whole.corrected += sample.corrected + ".\n";
  }
  LiveDesktop desk(programs);
  Editor editor(desk, editorKind, whole.typed);
  std::this_thread::sleep_for(1s);  // editors load large files after they show their window
  editor.selectAll();
  desk.trace().startAnew();
  desk.triggerHotKey();
  auto outcome = awaitCorrection(desk, editor, whole.corrected, 60s);
  return outcome.passed ? Outcome{true, std::to_string(whole.typed.size()) + " bytes"} : outcome;
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

/// A shortcut with the command that it must run: what identifies the command's prompt, and an answer to it.
struct ShortcutSample {
  std::string name;
  std::string key;  ///< with Control and Alt
  int carbonKeyCode;
  std::string prompt;
  std::string answer;
};

/// A backend that answers each of these commands in its own way.
Answer answerTo(const ReceivedRequest& request, const std::vector<ShortcutSample>& samples) {
  if (!request.target.ends_with("/completion")) {
    return Answer::json(200, R"({"success":true})");  // the counts, sent some time after a run
  }
  const auto found = std::ranges::find_if(
      samples, [&](const auto& sample) { return request.body.find(sample.prompt) != std::string::npos; });
  return completion(found == samples.end() ? "another command" : found->answer);
}

/// Shortcuts that the user set, by what their runs paste: at once, and after a restart.
Outcome shortcuts(const Programs& programs, const std::string& editorKind) {
  std::vector<ShortcutSample> samples = {
      {"", "k", 0x28, "Say it like a pirate", "the custom command"},
      {"translate", "t", 0x11, "translate the following text to ", "the default language"},
      {"changeTone", "j", 0x26, "to have a ", "the default tone"},
  };
  TestHttpServer backend;
  backend.answerOthers([&samples](const ReceivedRequest& request) { return answerTo(request, samples); });
  LiveDesktop desk(programs.quillmark, backend.port());
  auto& session = desk.session();
  desk.endQuillmark();
  {
    SqliteUserDefaults defaults(desk.data() / "defaults.sqlite");
    CustomPromptStore store(defaults);
    store.load();
    const auto pirate =
        Command::make("Pirate", std::nullopt, samples[0].prompt, std::nullopt, CommandCategory::writing);
    (void)store.add(pirate);
    samples[0].name = pirate.shortcutName();
  }
  desk.startQuillmark();
  // Set by another program while this one runs.
  for (const auto& sample : samples) {
    const Json combination = {{"carbonKeyCode", sample.carbonKeyCode}, {"carbonModifiers", 6144}};
    if (session.run({programs.commandLine, "--data-dir", desk.data(), "defaults", "write",
                     "KeyboardShortcuts_" + sample.name, "string", toText(combination)}) != 0) {
      return {false, "the shortcut can't be stored"};
    }
  }
  Editor editor(desk, editorKind);
  std::size_t runs = 0;
  for (const bool restarted : {false, true}) {
    if (restarted) {
      if (!desk.quillmarkEndsWell()) {
        return failed(desk, "Quillmark did not end well");
      }
      desk.startQuillmark();
      editor.focus();
    }
    for (const auto& sample : samples) {
      editor.write("text " + std::to_string(++runs));
      editor.selectAll();
      desk.trace().startAnew();
      session.tap({"Control_L", "Alt_L", sample.key});
      if (const auto outcome = awaitCorrection(desk, editor, sample.answer, answerDeadline); !outcome.passed) {
        return {false, std::string(restarted ? "after a restart" : "as set") + ", Control+Alt+" + sample.key + ": " +
                           outcome.reason};
      }
    }
  }
  const auto received = backend.waitForRequests(runs);
  const auto requests = static_cast<std::size_t>(
      std::ranges::count_if(received, [](const auto& request) { return request.target.ends_with("/completion"); }));
  if (requests != runs) {
    return {false, std::to_string(runs) + " shortcuts, but " + std::to_string(requests) + " requests"};
  }
  return {true, std::to_string(runs) + " runs of 3 shortcuts, one request for each"};
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
      {"terminal", "the copy key is no interrupt in a terminal", terminal},
      {"copyq", "beside the clipboard manager CopyQ", copyq},
      {"clipman", "beside the clipboard manager Clipman", clipman},
      {"hanging-owner", "an application that hangs with the clipboard in its hands", hangingOwner},
      {"held-modifiers", "the hot key's modifiers are held 300 ms too long", heldModifiers},
      {"large", "a selection of 300 kB", large},
      {"trigger", "runs asked for on the command line", trigger},
      {"shortcuts", "a command of the user's own, the default language and the default tone", shortcuts},
      {"review", "30 reviews in a row, through all views, applied by Return", reviewRuns},
      {"review-endings", "copy, discard, another provider and model, a provider that fails", reviewEndings},
      {"menu", "the command menu by keyboard and mouse, freestyle, closed by a click elsewhere", commandMenu},
      {"accessibility", "what a screen reader finds in the panels, and their focus", accessibility},
  };
  return all;
}

}  // namespace quillmark::demo
