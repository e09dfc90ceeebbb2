#include <atomic>
#include <stdexcept>

#include "desktop_demo/Runs.h"
#include "platform/posix/SqliteUserDefaults.h"
#include "support/AccessibleTree.h"

namespace quillmark::demo {
namespace {

using namespace std::chrono_literals;

constexpr auto deadline = 10s;

/// Somebody who knows of the panels only what a screen reader says.
class Listener {
 public:
  explicit Listener(Desk& desk) : desk_(desk), bus_(desk.session().environment()["DBUS_SESSION_BUS_ADDRESS"]) {}

  /// Waits until the lines of what shows are just these.
  void hear(const std::string& lines) {
    std::string heard;
    await("expected:" + lines + "heard:", heard, [&] {
      heard = '\n';
      for (const auto& object : bus_.read("quillmark")) {
        heard += object.line + '\n';
      }
      return heard == lines;
    });
  }
  /// Waits until the object says that it has got the keyboard.
  void hearOfFocus(const std::string& role, const std::string& name) {
    await("nothing was told of the keyboard's being in ", name,
          [&] { return bus_.lastFocused() == find(role, name).path; });
  }
  void press(const std::string& role, const std::string& name) { bus_.act(find(role, name), "Press"); }

 private:
  void await(const std::string& problem, const std::string& rest, const std::function<bool()>& isSo) {
    const auto holds = [&] {
      try {
        return isSo();
      } catch (const std::runtime_error&) {
        return false;  // an object that went while it was read
      }
    };
    if (!waitUntil(holds, deadline)) {
      throw std::runtime_error(failed(desk_, problem + rest).reason);
    }
  }
  Accessible find(const std::string& role, const std::string& name) {
    for (auto& object : bus_.read("quillmark")) {
      if (object.role == role && object.name == name) {
        return object;
      }
    }
    throw std::runtime_error("no " + role + ' ' + name);
  }

  Desk& desk_;
  AccessibilityBus bus_;
};

void listenToMenu(XSession& session, Listener& listener) {
  const std::string field = R"(
frame 'Command Menu'
  text 'Search for Commands' focused [make text]
  push button 'Switch to Freestyle mode (Tab)'
  list 'Commands'
)";
  listener.hearOfFocus("text", "Search for Commands");
  session.type("make text");
  listener.hear(field + R"(    list item 'Make Text Longer' focused selected
    list item 'Make Text Shorter'
)");
  session.tap({"Down"});
  listener.hearOfFocus("list item", "Make Text Shorter");
  listener.hear(field + R"(    list item 'Make Text Longer'
    list item 'Make Text Shorter' focused selected
)");
  session.type("zz");
  listener.hear(R"(
frame 'Command Menu'
  text 'Search for Commands' focused [make textzz]
  push button 'Switch to Freestyle mode (Tab)'
  label 'No commands found'
)");
  session.tap({"Tab"});
  listener.hear(R"(
frame 'Command Menu'
  text 'Describe your task...' focused []
  push button 'Switch to Filter mode (Tab)'
  label 'Type your task and press Enter to execute'
)");
  session.type("make it rhyme");
  listener.hear(R"(
frame 'Command Menu'
  text 'Describe your task...' focused [make it rhyme]
  push button 'Switch to Filter mode (Tab)'
  label 'Ready to execute:'
    text 'Ready to execute:' [make it rhyme]
)");
  session.tap({"Escape"});
  listener.hear("\n");
}

/// The review panel in one of its views, with what stands between the views and the bar.
std::string review(std::string_view chosenView, const std::string& content, const std::string& provider = "",
                   const std::string& apply = "", const std::string& copy = "Copy to clipboard (Ctrl+C)") {
  std::string lines = "\nframe 'Review'\n  panel 'View'\n";
  for (const std::string view : {"Text", "Styled", "Line by Line", "Word by Word"}) {
    lines += "    radio button '" + view + (view == chosenView ? "' checked\n" : "'\n");
  }
  lines += content + "  button menu 'Provider: Quillmark'" + provider;
  lines += R"(
  button menu 'Model: gpt-4.1-mini'
  push button 'Run again (Ctrl+R)'
  push button 'Discard'
  push button 'Apply')";
  lines += apply + "\n  push button '" + copy + '\'' + apply + '\n';
  return lines;
}

void listenToReview(XSession& session, Listener& listener, const Gate& answer) {
  listener.hear(review("Text", "  label 'Loading...' focused\n", "", " disabled"));
  answer.open();
  listener.hear(review("Text", "  text 'Result' focused [color sat here]\n"));
  listener.press("button menu", "Provider: Quillmark");
  listener.hear(review("Text", "  text 'Result' [color sat here]\n", " expanded") +
                "  list 'Provider' focused\n    list item 'Quillmark' checked focused selected\n");
  session.tap({"Escape"});
  listener.hearOfFocus("button menu", "Provider: Quillmark");

  const std::pair<std::string, std::string> round[] = {{"text", "Result"},
                                                       {"radio button", "Text"},
                                                       {"push button", "Copy to clipboard (Ctrl+C)"},
                                                       {"push button", "Apply"},
                                                       {"push button", "Discard"},
                                                       {"push button", "Run again (Ctrl+R)"},
                                                       {"button menu", "Model: gpt-4.1-mini"},
                                                       {"button menu", "Provider: Quillmark"}};
  for (const auto& [role, name] : round) {
    session.tap({"Shift_L", "Tab"});
    listener.hearOfFocus(role, name);
  }

  listener.press("radio button", "Line by Line");
  listener.hear(review("Line by Line", R"(  text 'Line by Line' [1 Deleted: colour big sat
2 Added: color sat here]
)",
                       " focused"));
  listener.press("radio button", "Word by Word");
  listener.hear(review("Word by Word", R"(  list 'Word by Word'
    list item 'color (Changed from: colour)'
    list item 'Deleted: big'
    list item 'sat'
    list item 'Added: here'
)",
                       " focused"));
  listener.press("push button", "Run again (Ctrl+R)");
  listener.hear(review("Word by Word",
                       "  alert message 'Unable to Complete Request'\n"
                       "    text 'Unable to Complete Request' [Failed to complete the request. The AI provider "
                       "returned an empty response. Please try again.]\n",
                       " focused", " disabled", "Cannot copy due to error"));
  listener.press("push button", "Discard");
  listener.hear("\n");
}

}  // namespace

Outcome accessibility(const Programs& programs, const std::string& editorKind) {
  const Gate answer;
  std::atomic<int> runs = 0;
  TestHttpServer backend;
  backend.answerOthers([&](const ReceivedRequest& request) {
    if (!request.target.ends_with("/completion")) {
      return Answer::json(200, R"({"success":true})");
    }
    return ++runs == 1 ? Answer::eventStream().waitFor(answer).chunk("color sat here").end()
                       : Answer::eventStream().end();
  });
  Desk desk(programs.quillmark, backend.port());
  desk.endQuillmark();
  desk.session().environment()["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "1";
  SqliteUserDefaults(desk.data() / "defaults.sqlite").set("defaultBehavior", std::string("showReview"));
  Listener listener(desk);
  desk.startQuillmark();
  Editor editor(desk, editorKind);
  editor.write("colour big sat");
  if (desk.session().run({programs.commandLine, "trigger", "command-menu"}) != 0) {
    return failed(desk, "the running program did not take the trigger");
  }
  listenToMenu(desk.session(), listener);
  editor.focus();
  editor.selectAll();
  desk.triggerHotKey();
  listenToReview(desk.session(), listener, answer);
  if (!desk.quillmarkEndsWell()) {
    return failed(desk, "Quillmark did not end well");
  }
  return {true, "all of both panels has a role and a name, and every control gets the keyboard"};
}

}  // namespace quillmark::demo
