#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/Log.h"
#include "platform/simulated/SimulatedDesktop.h"
#include "shell/QuillmarkApp.h"

namespace quillmark {

using namespace std::chrono_literals;

/// The whole system on a simulated desktop, with the hosted service answering as the test says.
struct Scenario : testing::Test {
  Scenario() {
    setLogSink([this](std::string_view line) { logLines.emplace_back(line); });
    desktop.defaults.set("defaultBehavior", std::string("replaceSelection"));
    // The catalogue has just been fetched, so that a start sends nothing.
    desktop.defaults.set("templatesLastFetch",
                         std::chrono::duration<double>(desktop.queue.now().time_since_epoch()).count());
  }
  ~Scenario() override { setLogSink({}); }

  /// Starts the system; a second call is a restart.
  QuillmarkApp& start() {
    app.reset();
    app = std::make_unique<QuillmarkApp>(
        desktop.platform(), PanelWindows{&loading, desktop.reviewWindow, desktop.menuWindow}, QuillmarkApp::Options{});
    desktop.advance(1s);
    return *app;
  }

  QuillmarkApp::Services services() { return app->services(); }

  /// Opens an editor that has been in front for a while.
  std::shared_ptr<SimulatedApplication> editorWith(const std::string& text) {
    auto editor = desktop.openEditor("Editor", text);
    desktop.advance(1min);
    return editor;
  }

  static std::string answerJson(const std::string& content) {
    Json json = parseJson(R"({"model":"m","object":"chat.completion","created":1,)"
                          R"("choices":[{"index":0,"message":{"role":"assistant"}}]})");
    json["choices"][0]["message"]["content"] = content;
    return toText(json);
  }
  using Exchange = SimulatedHttpSession::Exchange;

  static bool isSyncOfCounts(const Exchange& exchange) {
    return exchange.request.url.ends_with("/api//app/statistics");
  }
  /// The exchanges so far for which this holds, in order.
  std::vector<const Exchange*> requestsThat(const std::function<bool(const Exchange&)>& holds) const {
    std::vector<const Exchange*> found;
    for (const auto& exchange : desktop.http.exchanges) {
      if (holds(exchange)) {
        found.push_back(&exchange);
      }
    }
    return found;
  }
  /// All except the counts, which are sent some time after a run.
  std::vector<const Exchange*> requests() const { return requestsThat(std::not_fn(isSyncOfCounts)); }
  /// The one of them that is in flight.
  const Exchange& request() const { return *requests().back(); }
  void everyRequestIsAnswered(const std::string& content) {
    desktop.http.onRequest = [content](const auto& exchange) {
      exchange.answerJson(isSyncOfCounts(exchange) ? R"({"success":true})" : answerJson(content));
    };
  }

  /// Stores a combination under a shortcut's name, as its recorder does.
  void storeShortcut(const std::string& name, const KeyCombination& combination) {
    desktop.defaults.set(
        GlobalShortcuts::defaultsKey(name),
        toText({{"carbonKeyCode", combination.carbonKeyCode}, {"carbonModifiers", combination.carbonModifiers}}));
  }
  /// Closes the one open alert and returns its "title: message"; empty when there is none.
  std::string closeAlert(std::size_t button = 0) {
    desktop.queue.settle();
    if (desktop.alerts.open.empty()) {
      return "";
    }
    EXPECT_EQ(desktop.alerts.open.size(), 1u);
    const Alert alert = desktop.alerts.open.back();
    desktop.alerts.close(button);
    desktop.queue.settle();
    return alert.title + ": " + alert.message;
  }

  Command commandOf(ActionCase action) { return *app->promptStore().commandFor(action); }
  /// Runs a built-in action with this behaviour, as its shortcut would.
  void run(ActionCase action, std::optional<ActionBehavior> behavior = std::nullopt) {
    Command command = commandOf(action);
    command.behavior = behavior;
    services().actionService.runCommand(command, true);
  }

  bool logged(const std::string& line) const {
    return std::find(logLines.begin(), logLines.end(), line) != logLines.end();
  }

  std::vector<std::string> logLines;
  SimulatedDesktop desktop;
  SimulatedWindow& loading = desktop.loadingWindow;
  PanelWindows windows{&loading, desktop.reviewWindow, desktop.menuWindow};
  std::unique_ptr<QuillmarkApp> app;
};

}  // namespace quillmark
