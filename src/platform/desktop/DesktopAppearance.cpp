#include "platform/desktop/DesktopAppearance.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

namespace quillmark {

namespace {

const QString portal = QStringLiteral("org.freedesktop.portal.Desktop");
const QString path = QStringLiteral("/org/freedesktop/portal/desktop");
const QString interface = QStringLiteral("org.freedesktop.portal.Settings");
const QString group = QStringLiteral("org.freedesktop.appearance");

/// The portal wraps an answer in one variant or in two, depending on its version.
QVariant unwrapped(QVariant value) {
  while (value.canConvert<QDBusVariant>()) {
    value = value.value<QDBusVariant>().variant();
  }
  return value;
}

/// Three components between 0 and 1; any others mean that there is no colour.
std::optional<QColor> colourOf(const QVariant& value) {
  if (!value.canConvert<QDBusArgument>()) {
    return std::nullopt;
  }
  const auto argument = value.value<QDBusArgument>();
  if (argument.currentSignature() != QLatin1String("(ddd)")) {
    return std::nullopt;
  }
  double red = -1;
  double green = -1;
  double blue = -1;
  argument.beginStructure();
  argument >> red >> green >> blue;
  argument.endStructure();
  const auto isPart = [](double part) { return part >= 0 && part <= 1; };
  if (!isPart(red) || !isPart(green) || !isPart(blue)) {
    return std::nullopt;
  }
  return QColor::fromRgbF(float(red), float(green), float(blue));
}

}  // namespace

DesktopAppearance::DesktopAppearance(QDBusConnection bus, std::function<void(const Wishes&)> changed)
    : bus_(std::move(bus)), changed_(std::move(changed)) {
  askSoon_.setSingleShot(true);
  askSoon_.setInterval(0);
  QObject::connect(&askSoon_, &QTimer::timeout, &askSoon_, [this] { ask(); });
  // Several settings often change at once; the timer coalesces them.
  bus_.connect(portal, path, interface, QStringLiteral("SettingChanged"), &askSoon_, SLOT(start()));
  ask();
}

void DesktopAppearance::ask() {
  ask(QStringLiteral("color-scheme"), [this](const QVariant& value) {
    constexpr unsigned preferDark = 1;
    constexpr unsigned preferLight = 2;
    Wishes wishes = wishes_;
    wishes.scheme.reset();
    if (value.toUInt() == preferDark) {
      wishes.scheme = ColorScheme::dark;
    } else if (value.toUInt() == preferLight) {
      wishes.scheme = ColorScheme::light;
    }
    adopt(wishes);
  });
  ask(QStringLiteral("accent-color"), [this](const QVariant& value) {
    Wishes wishes = wishes_;
    wishes.accent = colourOf(value);
    adopt(wishes);
  });
}

void DesktopAppearance::ask(const QString& key, std::function<void(const QVariant&)> answered) {
  auto message = QDBusMessage::createMethodCall(portal, path, interface, QStringLiteral("Read"));
  message << group << key;
  auto* const watcher = new QDBusPendingCallWatcher(bus_.asyncCall(message), &askSoon_);
  QObject::connect(watcher, &QDBusPendingCallWatcher::finished, &askSoon_,
                   [answered = std::move(answered)](QDBusPendingCallWatcher* call) {
                     const QDBusPendingReply<QDBusVariant> reply = *call;
                     if (!reply.isError()) {
                       answered(unwrapped(reply.value().variant()));
                     }
                     call->deleteLater();
                   });
}

void DesktopAppearance::adopt(const Wishes& wishes) {
  if (wishes != wishes_) {
    wishes_ = wishes;
    changed_(wishes_);
  }
}

}  // namespace quillmark
