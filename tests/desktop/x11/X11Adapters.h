#pragma once

#include <gtest/gtest.h>

#include "base/Log.h"
#include "platform/desktop/x11/X11HotKeys.h"
#include "platform/desktop/x11/X11KeyInjector.h"
#include "platform/desktop/x11/X11Pasteboard.h"
#include "platform/desktop/x11/X11Workspace.h"
#include "support/EventLoop.h"
#include "support/XSession.h"

namespace quillmark {

/// A screen with the adapters at work on it, in one test.
struct X11Adapters : testing::Test {
  XSession session;
  EventLoop loop;
  X11Connection connection{session.display()};
  X11Keyboard keyboard{connection, loop};
  X11Pasteboard pasteboard{connection, loop};
  X11Workspace workspace{connection, loop, "org.example.own"};
  X11KeyInjector injector{connection, keyboard, workspace};
  X11HotKeys hotKeys{connection, keyboard};
  std::string lines;  ///< of the log

  X11Adapters() {
    loop.watch(connection.descriptor(), [this] { connection.drain(); });
    setLogSink([this](std::string_view line) { lines.append(line).append("\n"); });
  }
  ~X11Adapters() override { setLogSink({}); }

  void post(KeyCode letter) {
    std::vector<KeyboardEvent> events;
    for (const auto& [key, down] : {std::pair(KeyCode::commandModifier, true),
                                    {letter, true},
                                    {KeyCode::commandModifier, false},
                                    {letter, false}}) {
      auto event = injector.createKeyboardEvent(key, down);
      ASSERT_TRUE(event);
      event->flags = commandFlag;
      events.push_back(*event);
    }
    injector.post(events);
  }

  /// What the pasteboard holds; nothing when it holds no text.
  std::optional<std::string> read() {
    bool done = false;
    std::optional<std::string> result;
    pasteboard.readString([&](std::optional<std::string> text) {
      result = std::move(text);
      done = true;
    });
    EXPECT_TRUE(loop.runUntil([&] { return done; }));
    return result;
  }

  /// Clears, posts the copy key and waits until an application has taken the pasteboard; nothing if none does.
  std::optional<std::string> copyFromWindowInFront(std::chrono::milliseconds deadline = std::chrono::seconds(10)) {
    pasteboard.clearContents();
    post(KeyCode::c);
    std::optional<std::string> text;
    loop.runUntil([&] { return (text = read()).has_value(); }, deadline);
    return text;
  }
};

}  // namespace quillmark
