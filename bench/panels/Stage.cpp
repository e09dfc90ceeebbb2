#include "bench/panels/Stage.h"

#include <QAbstractEventDispatcher>
#include <QDeadlineTimer>
#include <QScreen>
#include <QThread>
#include <QWindow>
#include <cstdlib>
#include <stdexcept>

#include <xcb/xcb.h>

namespace quillmark::bench {
namespace {

Platform platformOn(MainQueue& queue, SimulatedDesktop& desktop) {
  const Platform all = desktop.platform();
  return {all.bundle, all.operatingSystem, queue,           all.backgroundQueue, all.defaults,  all.locale,
          all.http,   all.pasteboard,      all.keyInjector, all.hotKeys,         all.workspace, all.screens,
          all.alerts, all.permissions,     all.loginItem};
}

/// Waits until the X server has processed every request; without one there is nothing to wait for.
void waitForServer() {
  const auto* const native = qApp->nativeInterface<QNativeInterface::QX11Application>();
  if (native && native->connection()) {
    std::free(xcb_get_input_focus_reply(native->connection(), xcb_get_input_focus(native->connection()), nullptr));
  }
}

}  // namespace

bool DrawingApplication::notify(QObject* receiver, QEvent* event) {
  const auto type = event->type();
  ++events;
  paintings += type == QEvent::Paint ? 1 : 0;
  const bool result = QApplication::notify(receiver, event);
  if (type == QEvent::UpdateRequest && frameIsDrawn) {
    frameIsDrawn();
  }
  return result;
}

Stage::Stage(DrawingApplication& application)
    : application_(application), app_(platformOn(queue_, desktop_), {nullptr, reviewWindow_, menuWindow_}, {}) {
  const QRect screen = QGuiApplication::primaryScreen()->geometry();
  const Rect area{{0, 0}, {double(screen.width()), double(screen.height())}};
  desktop_.screens.all = {{area, area}};
  reviewWindow_.setContent(review_);
  reviewWindow_.setResizable(true);
  menuWindow_.setContent(menu_);
  menuWindow_.setContentSize({double(menu_.sizeHint().width()), double(menu_.sizeHint().height())});
  for (const QWidget* widget : review_.findChildren<QWidget*>()) {
    if (const auto* const found = dynamic_cast<const TypewriterText*>(widget)) {
      answer_ = found;
    }
  }
  settle();
}

void Stage::openMenu() {
  app_.commandPanel().togglePanel(InvocationSource::keyboardShortcut);
  waitUntilShown(menuWindow_);
}

void Stage::closeMenu() {
  app_.commandPanel().cancel();
  waitUntilNothingIsShown();
}

void Stage::openReview(ReviewViewMode mode) {
  const std::string selection = "What the user had selected.";
  const Command command = Command::make(UserAction(ActionCase::fixGrammar));
  auto& session = app_.reviewPanel();
  session.setCommand(command);
  session.open("", selection);
  app_.reviewViewState().setViewMode(mode);
  session.execute(command, selection);
  streaming_.start();
  answering_ = &desktop_.http.exchanges.back();
  waitUntilShown(reviewWindow_);
}

void Stage::closeReview() {
  answering_->end();
  settle();
  app_.reviewPanel().discard();
  waitUntilNothingIsShown();
}

void Stage::pulse() {
  constexpr qint64 period = 2000;
  const auto phase = [this] { return streaming_.elapsed() % period; };
  waitUntil([&] { return phase() >= period / 5 && phase() < period / 4; });
}

double Stage::drawingTimeOf(const std::function<void()>& work) {
  const auto paintings = application_.paintings;
  const auto before = now();
  work();
  sendAllPostedEvents();
  waitForServer();
  const auto after = now();
  if (application_.paintings == paintings) {
    throw std::runtime_error("nothing was drawn");
  }
  return millisecondsBetween(before, after);
}

void Stage::sendAllPostedEvents() {
  // What is posted meanwhile waits for the next iteration.
  std::size_t before = 0;
  do {
    before = application_.events;
    QCoreApplication::sendPostedEvents();
  } while (application_.events != before);
}

void Stage::settle() {
  do {
    sendAllPostedEvents();
    waitForServer();
  } while (QGuiApplication::eventDispatcher()->processEvents(QEventLoop::AllEvents));
}

void Stage::waitUntil(const std::function<bool()>& condition) {
  const QDeadlineTimer deadline(20'000);
  while (!condition()) {
    if (deadline.hasExpired()) {
      throw std::runtime_error("a panel does not open, or does not close");
    }
    QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    QThread::msleep(1);
  }
  settle();
}

void Stage::waitUntilShown(const QWidget& window) {
  waitUntil([&] { return window.windowHandle()->isExposed() && window.isActiveWindow(); });
}

// The toolkit needs some time to notice that it has lost the keyboard; what opens meanwhile does not become active.
void Stage::waitUntilNothingIsShown() {
  waitUntil([] { return QGuiApplication::focusWindow() == nullptr; });
}

}  // namespace quillmark::bench
