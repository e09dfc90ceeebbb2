#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>

#include "desktop_qt/SessionBus.h"
#include "desktop_qt/WaitFor.h"
#include "platform/desktop/DesktopAppearance.h"

namespace quillmark {
namespace {

using ColorScheme = DesktopAppearance::ColorScheme;
using Wishes = DesktopAppearance::Wishes;

/// A settings portal with values set by the test.
class Portal : public QDBusVirtualObject {
 public:
  explicit Portal(QDBusConnection bus) : bus_(std::move(bus)) {
    bus_.registerVirtualObject(path, this);
    bus_.registerService(QStringLiteral("org.freedesktop.portal.Desktop"));
  }
  QString introspect(const QString&) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
    const auto found = values.find(message.arguments().value(1).toString());
    if (found == values.end()) {
      return connection.send(message.createErrorReply(QStringLiteral("org.freedesktop.portal.Error.NotFound"), {}));
    }
    // In two variants, as the older versions of the portal do.
    return connection.send(
        message.createReply(QVariant::fromValue(QDBusVariant(QVariant::fromValue(QDBusVariant(found.value()))))));
  }
  void change(const QString& key, const QVariant& value) {
    values[key] = value;
    auto signal = QDBusMessage::createSignal(path, QStringLiteral("org.freedesktop.portal.Settings"),
                                             QStringLiteral("SettingChanged"));
    signal << QStringLiteral("org.freedesktop.appearance") << key << QVariant::fromValue(QDBusVariant(value));
    bus_.send(signal);
  }

  QMap<QString, QVariant> values;

 private:
  const QString path = QStringLiteral("/org/freedesktop/portal/desktop");
  QDBusConnection bus_;
};

QVariant colour(double red, double green, double blue) {
  QDBusArgument argument;
  argument.beginStructure();
  argument << red << green << blue;
  argument.endStructure();
  return QVariant::fromValue(argument);
}

using DesktopAppearanceTest = SessionBus;

TEST_F(DesktopAppearanceTest, asksThePortalAndFollowsItsChanges) {
  Portal portal(connect());
  portal.values = {{"color-scheme", 1U}, {"accent-color", colour(1, 0, 0)}};
  Wishes latest;
  const DesktopAppearance appearance(connect(), [&](const Wishes& wishes) { latest = wishes; });
  EXPECT_TRUE(waitFor([&] { return latest == Wishes{ColorScheme::dark, QColor(Qt::red)}; }));
  portal.change("color-scheme", 2U);
  EXPECT_TRUE(waitFor([&] { return latest.scheme == ColorScheme::light; }));
  portal.change("accent-color", colour(-1, -1, -1));
  EXPECT_TRUE(waitFor([&] { return !latest.accent; })) << "parts outside 0 to 1 are no colour";
  portal.change("color-scheme", 0U);
  EXPECT_TRUE(waitFor([&] { return latest == Wishes{}; }));
}

TEST_F(DesktopAppearanceTest, hasNoPreferencesWithoutAPortal) {
  Portal portal(connect());
  int told = 0;
  const DesktopAppearance appearance(connect(), [&](const Wishes&) { ++told; });
  portal.change("color-scheme", 1U);
  EXPECT_TRUE(waitFor([&] { return told == 1; }));
  const DesktopAppearance without(QDBusConnection(QStringLiteral("no such connection")),
                                  [&](const Wishes&) { ++told; });
  QCoreApplication::processEvents();
  EXPECT_EQ(told, 1);
}

}  // namespace
}  // namespace quillmark
