#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QTimer>

#include <gtest/gtest.h>
#include <poll.h>

#include "base/Log.h"
#include "platform/desktop/QtMainQueue.h"
#include "platform/desktop/SocketWatch.h"
#include "platform/desktop/x11/X11HotKeys.h"
#include "platform/desktop/x11/X11KeyInjector.h"
#include "platform/desktop/x11/X11Pasteboard.h"
#include "platform/desktop/x11/X11Workspace.h"
#include "support/XSession.h"

namespace quillmark {

/// The program's own loop, turned by a test.
class EventLoop : public QtMainQueue {
 public:
  /// `drain` is called when the descriptor can be read, and each time before the loop sleeps.
  void watch(int descriptor, const std::function<void()>& drain) {
    const auto count = [this, descriptor, drain] {
      pollfd readable{descriptor, POLLIN, 0};
      wakeUps_ += poll(&readable, 1, 0);
      drain();
    };
    watches_.push_back(std::make_unique<SocketWatch>(descriptor, count, SocketWatch::When::readableAndBeforeSleep));
  }
  /// Runs until the condition holds; false after the deadline.
  bool runUntil(const std::function<bool()>& condition, std::chrono::milliseconds deadline = std::chrono::seconds(20)) {
    const QDeadlineTimer end(deadline);
    QTimer tick;  // conditions about other programs cause no event here
    tick.start(3);
    while (!condition()) {
      if (end.hasExpired()) {
        return false;
      }
      QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
  }
  void runFor(std::chrono::milliseconds time) {
    const QDeadlineTimer end(time);
    runUntil([&] { return end.hasExpired(); });
  }
  /// How often there was something to read.
  int wakeUps() const { return wakeUps_; }

 private:
  std::vector<std::unique_ptr<SocketWatch>> watches_;
  int wakeUps_ = 0;
};

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

  static void SetUpTestSuite() {
    static int count = 1;
    static char name[] = "test_desktop";
    static char* arguments[] = {name, nullptr};
    static const QCoreApplication application(count, arguments);
  }
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
