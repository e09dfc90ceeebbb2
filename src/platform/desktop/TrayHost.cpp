#include "platform/desktop/TrayHost.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QGuiApplication>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <string>

#include <xcb/xcb.h>
#include <xcb/xfixes.h>

#include "platform/desktop/SocketWatch.h"

namespace quillmark {

namespace {

using namespace std::chrono_literals;

const QString watcherService = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString watcherPath = QStringLiteral("/StatusNotifierWatcher");

}  // namespace

/// Hosts on the session bus.
class TrayHost::Notifier {
 public:
  explicit Notifier(std::function<void()> changed) : changed_(std::move(changed)) {
    if (!bus_.isConnected()) {
      answered_ = true;
      return;
    }
    watcher_.setConnection(bus_);
    watcher_.addWatchedService(watcherService);
    watcher_.setWatchMode(QDBusServiceWatcher::WatchForOwnerChange);
    QObject::connect(&watcher_, &QDBusServiceWatcher::serviceOwnerChanged, &watcher_, [this] { ask(); });

    // A bus signal can only be led to a slot that the toolkit knows by name: the timer has one.
    again_.setSingleShot(true);
    QObject::connect(&again_, &QTimer::timeout, &again_, [this] { ask(); });
    for (const char* signal : {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"}) {
      bus_.connect(watcherService, watcherPath, watcherService, QLatin1String(signal), &again_, SLOT(start()));
    }
    ask();
  }

  bool answered() const { return answered_; }
  bool present() const { return present_; }

 private:
  void ask() {
    auto question = QDBusMessage::createMethodCall(
        watcherService, watcherPath, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    question.setArguments({watcherService, QStringLiteral("IsStatusNotifierHostRegistered")});
    question.setAutoStartService(false);
    pending_ = std::make_unique<QDBusPendingCallWatcher>(bus_.asyncCall(question));
    QObject::connect(pending_.get(), &QDBusPendingCallWatcher::finished, pending_.get(), [this] {
      const QDBusPendingReply<QDBusVariant> reply = *pending_;
      pending_.release()->deleteLater();
      answered_ = true;
      present_ = reply.isValid() && reply.value().variant().toBool();
      changed_();
    });
  }

  std::function<void()> changed_;
  QDBusConnection bus_ = QDBusConnection::sessionBus();
  QDBusServiceWatcher watcher_;
  QTimer again_;
  std::unique_ptr<QDBusPendingCallWatcher> pending_;  // a new question drops the answer to an older one
  bool answered_ = false;
  bool present_ = false;
};

/// The host on the X server, told by the owner of its selection.
class TrayHost::Embedder {
 public:
  explicit Embedder(std::function<void()> changed) : changed_(std::move(changed)) {
    int number = 0;
    connection_.reset(xcb_connect(nullptr, &number));
    if (xcb_connection_has_error(connection_.get()) != 0) {
      return;
    }
    auto screen = xcb_setup_roots_iterator(xcb_get_setup(connection_.get()));
    for (int i = 0; i < number && screen.rem > 1; ++i) {
      xcb_screen_next(&screen);
    }
    const std::string name = "_NET_SYSTEM_TRAY_S" + std::to_string(number);
    const auto named = xcb_intern_atom(connection_.get(), 0, static_cast<std::uint16_t>(name.size()), name.data());
    const auto version = xcb_xfixes_query_version(connection_.get(), 5, 0);
    const std::unique_ptr<xcb_intern_atom_reply_t, Free> atom(xcb_intern_atom_reply(connection_.get(), named, nullptr));
    const std::unique_ptr<xcb_xfixes_query_version_reply_t, Free> fixes(
        xcb_xfixes_query_version_reply(connection_.get(), version, nullptr));
    if (!atom || !fixes) {
      return;
    }
    selection_ = atom->atom;
    xcb_xfixes_select_selection_input(connection_.get(), screen.data->root, selection_,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    askOwner();
    watch_ = std::make_unique<SocketWatch>(xcb_get_file_descriptor(connection_.get()), [this] { drain(); });
  }

  bool present() const { return present_; }

 private:
  struct Free {
    void operator()(void* reply) const { std::free(reply); }
  };
  struct Disconnect {
    void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
  };

  void askOwner() {
    const std::unique_ptr<xcb_get_selection_owner_reply_t, Free> owner(xcb_get_selection_owner_reply(
        connection_.get(), xcb_get_selection_owner(connection_.get(), selection_), nullptr));
    present_ = owner && owner->owner != XCB_NONE;
  }

  bool readEvents() {
    bool any = false;
    while (const std::unique_ptr<xcb_generic_event_t, Free> event{xcb_poll_for_event(connection_.get())}) {
      any = true;
    }
    return any;
  }

  void drain() {
    bool heard = false;
    while (readEvents()) {  // more may be read while the answer is awaited
      heard = true;
      askOwner();
    }
    if (heard) {
      changed_();
    }
  }

  std::function<void()> changed_;
  std::unique_ptr<xcb_connection_t, Disconnect> connection_;
  std::unique_ptr<SocketWatch> watch_;
  xcb_atom_t selection_ = XCB_ATOM_NONE;
  bool present_ = false;
};

TrayHost::TrayHost() {
  settle_.setSingleShot(true);
  QObject::connect(&settle_, &QTimer::timeout, &settle_, [this] { available.set(true); });
  notifier_ = std::make_unique<Notifier>([this] { update(); });
  if (QGuiApplication::platformName() == QLatin1String("xcb")) {
    embedder_ = std::make_unique<Embedder>([this] { update(); });
  }
  if (notifier_->answered()) {
    QTimer::singleShot(0, &settle_, [this] { update(); });
  }
}

TrayHost::~TrayHost() = default;

bool TrayHost::drawsMenus() const { return notifier_->present(); }

void TrayHost::update() {
  if (!notifier_->answered()) {
    return;
  }
  const bool embedder = embedder_ && embedder_->present();
  const bool atStart = !std::exchange(started_, true);
  if (notifier_->present() || (embedder && atStart)) {
    settle_.stop();
    if (!available.get()) {
      available.set(true);
    }
  } else if (embedder) {
    // A desktop that is coming up brings both kinds of host, in any order.
    if (!available.get() && !settle_.isActive()) {
      settle_.start(1s);
    }
  } else {
    settle_.stop();
    if (available.get()) {
      available.set(false);
    }
  }
}

}  // namespace quillmark
