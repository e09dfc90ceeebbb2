#include "platform/desktop/TrayHost.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <chrono>
#include <functional>
#include <utility>

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

    // A bus signal can only be connected to a slot that the toolkit knows by name: the timer has one.
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
  std::unique_ptr<QDBusPendingCallWatcher> pending_;  // a new call drops the reply to an older one
  bool answered_ = false;
  bool present_ = false;
};

TrayHost::TrayHost(WindowHints& hints) : hints_(hints) {
  settle_.setSingleShot(true);
  QObject::connect(&settle_, &QTimer::timeout, &settle_, [this] { available.set(true); });
  notifier_ = std::make_unique<Notifier>([this] { update(); });
  trayManagerChanges_ = hints_.trayManagerChanged.connect([this] { update(); });
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
  const bool embedder = hints_.trayManagerRunning();
  const bool atStart = !std::exchange(started_, true);
  if (notifier_->present() || (embedder && atStart)) {
    settle_.stop();
    if (!available.get()) {
      available.set(true);
    }
  } else if (embedder) {
    // A starting desktop brings up both kinds of host, in any order.
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
