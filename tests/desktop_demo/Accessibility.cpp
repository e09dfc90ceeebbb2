#include <atomic>
#include <memory>
#include <stdexcept>

#include <systemd/sd-bus.h>

#include "desktop_demo/Runs.h"
#include "platform/posix/SqliteUserDefaults.h"

namespace quillmark::demo {
namespace {

using namespace std::chrono_literals;

constexpr auto deadline = 10s;

/// What a screen reader gets to know of one object of a program.
struct Accessible {
  std::string owner;  ///< its program's name on the bus
  std::string path;
  std::string role;  ///< such as "push button"
  std::string name;
  std::string line;  ///< role, name, states and text, indented by its depth
};

constexpr const char* accessible = "org.a11y.atspi.Accessible";
constexpr const char* action = "org.a11y.atspi.Action";

struct Unref {
  void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
};
using Message = std::unique_ptr<sd_bus_message, Unref>;

template <class... Arguments>
Message call(sd_bus* bus, const Accessible& object, const char* interface, const char* method,
             const char* signature = "", Arguments... arguments) {
  sd_bus_error error{};
  sd_bus_message* reply = nullptr;
  if (sd_bus_call_method(bus, object.owner.c_str(), object.path.c_str(), interface, method, &error, &reply, signature,
                         arguments...) < 0) {
    const std::string reason = error.message != nullptr ? error.message : "no answer";
    sd_bus_error_free(&error);
    throw std::runtime_error(std::string("accessibility: ") + method + ": " + reason);
  }
  return Message(reply);
}

std::string textOf(const Message& message) {
  const char* text = nullptr;
  sd_bus_message_read(message.get(), "s", &text);
  return text != nullptr ? text : "";
}

std::string nameOf(sd_bus* bus, const Accessible& object) {
  const auto reply = call(bus, object, "org.freedesktop.DBus.Properties", "Get", "ss", accessible, "Name");
  sd_bus_message_enter_container(reply.get(), 'v', "s");
  return textOf(reply);
}

std::vector<Accessible> childrenOf(sd_bus* bus, const Accessible& object) {
  const auto reply = call(bus, object, accessible, "GetChildren");
  std::vector<Accessible> children;
  const char* owner = nullptr;
  const char* path = nullptr;
  sd_bus_message_enter_container(reply.get(), 'a', "(so)");
  while (sd_bus_message_read(reply.get(), "(so)", &owner, &path) > 0) {
    children.push_back({owner, path});
  }
  return children;
}

sd_bus* connect(const std::string& address) {
  sd_bus* bus = nullptr;
  sd_bus_new(&bus);
  if (sd_bus_set_address(bus, address.c_str()) < 0 || sd_bus_set_bus_client(bus, 1) < 0 || sd_bus_start(bus) < 0) {
    sd_bus_unref(bus);
    throw std::runtime_error("accessibility: no bus at " + address);
  }
  sd_bus_set_method_call_timeout(bus, 5'000'000);  // microseconds
  return bus;
}

int stateChanged(sd_bus_message* signal, void* lastFocused, sd_bus_error*) {
  const char* state = nullptr;
  int on = 0;
  if (sd_bus_message_read(signal, "si", &state, &on) > 0 && std::string_view(state) == "focused" && on != 0) {
    *static_cast<std::string*>(lastFocused) = sd_bus_message_get_path(signal);
  }
  return 0;
}

/// The accessibility bus of a session. All methods throw std::runtime_error when nobody answers.
class AccessibilityBus {
 public:
  /// Has the session bus start the accessibility bus if need be.
  explicit AccessibilityBus(const std::string& sessionBusAddress) {
    auto* const session = connect(sessionBusAddress);
    const auto address = textOf(call(session, {"org.a11y.Bus", "/org/a11y/bus"}, "org.a11y.Bus", "GetAddress"));
    sd_bus_flush_close_unref(session);
    bus_ = connect(address);
    // Programs only tell what somebody wants to hear.
    sd_bus_match_signal(bus_, nullptr, nullptr, nullptr, "org.a11y.atspi.Event.Object", "StateChanged", stateChanged,
                        &lastFocused_);
    call(bus_, {"org.a11y.atspi.Registry", "/org/a11y/atspi/registry"}, "org.a11y.atspi.Registry", "RegisterEvent", "s",
         "object:state-changed:focused");
  }
  AccessibilityBus(const AccessibilityBus&) = delete;
  AccessibilityBus& operator=(const AccessibilityBus&) = delete;
  ~AccessibilityBus() { sd_bus_flush_close_unref(bus_); }

  /// All that shows of the program, from its windows down, but for what a screen reader passes over and has no name.
  std::vector<Accessible> read(const std::string& program) {
    std::vector<Accessible> found;
    for (const auto& each : childrenOf(bus_, {"org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root"})) {
      if (nameOf(bus_, each) == program) {
        readInside(each, "", found);
      }
    }
    return found;
  }
  /// Does the object's action of this name, such as "Press".
  void act(const Accessible& object, const std::string& wanted) {
    const auto reply = call(bus_, object, action, "GetActions");
    const char* name = nullptr;
    sd_bus_message_enter_container(reply.get(), 'a', "(sss)");
    for (int i = 0; sd_bus_message_read(reply.get(), "(sss)", &name, nullptr, nullptr) > 0; ++i) {
      if (wanted == name) {
        call(bus_, object, action, "DoAction", "i", i);
        return;
      }
    }
    throw std::runtime_error("accessibility: \"" + object.name + "\" has no action " + wanted);
  }
  /// The path of the object that was the last to say that it has the keyboard.
  const std::string& lastFocused() {
    while (sd_bus_process(bus_, nullptr) > 0) {
    }
    return lastFocused_;
  }

 private:
  void readInside(const Accessible& outer, const std::string& indent, std::vector<Accessible>& found) {
    for (auto& object : childrenOf(bus_, outer)) {
      std::uint32_t low = 0;
      std::uint32_t high = 0;
      sd_bus_message_read(call(bus_, object, accessible, "GetState").get(), "au", 2, &low, &high);
      const auto is = [low](int state) { return (low >> state & 1) != 0; };  // by their numbers on the bus
      if (!is(25)) {                                                         // showing
        continue;
      }
      object.role = textOf(call(bus_, object, accessible, "GetRoleName"));
      object.name = nameOf(bus_, object);
      if (object.role == "filler" && object.name.empty()) {
        readInside(object, indent, found);
        continue;
      }
      object.line = indent + object.role;
      object.line += " '" + object.name + '\'';
      for (const auto& [state, word] :
           {std::pair(4, " checked"), {10, " expanded"}, {12, " focused"}, {23, " selected"}}) {
        object.line += is(state) ? word : "";
      }
      object.line += is(8) ? "" : " disabled";
      if (object.role == "text") {
        object.line += " [" + textOf(call(bus_, object, "org.a11y.atspi.Text", "GetText", "ii", 0, -1)) + ']';
      }
      found.push_back(object);
      readInside(object, indent + "  ", found);
    }
  }

  sd_bus* bus_ = nullptr;
  std::string lastFocused_;
};

/// Somebody who knows of the panels only what a screen reader says.
class Listener {
 public:
  explicit Listener(LiveDesktop& desk) : desk_(desk), bus_(desk.session().environment()["DBUS_SESSION_BUS_ADDRESS"]) {}

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

  LiveDesktop& desk_;
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
  LiveDesktop desk(programs.quillmark, backend.port());
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
