#include "platform/desktop/SingleInstance.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>

#include "base/Log.h"
#include "platform/desktop/DBusService.h"

namespace quillmark {

SingleInstance::Start SingleInstance::claim(QDBusConnection bus, DBusService& service,
                                            const std::vector<std::string>& arguments) {
  if (!bus.isConnected()) {
    log("No session bus: other starts can't hand over to this one");
    return Start::first;
  }
  QStringList list;
  for (const std::string& argument : arguments) {
    list << QString::fromStdString(argument);
  }

  // The other instance may have quit between our request for the name and our call.
  constexpr int attempts = 3;
  QString failure;
  for (int attempt = 0; attempt < attempts; ++attempt) {
    // The object before the name: a client that sees the name finds the object.
    bus.registerVirtualObject(DBusService::path, &service);
    const QDBusReply<QDBusConnectionInterface::RegisterServiceReply> named = bus.interface()->registerService(
        DBusService::name, QDBusConnectionInterface::DontQueueService, QDBusConnectionInterface::DontAllowReplacement);
    if (named.isValid() && named.value() == QDBusConnectionInterface::ServiceRegistered) {
      return Start::first;
    }
    bus.unregisterObject(DBusService::path);

    auto call = QDBusMessage::createMethodCall(DBusService::name, DBusService::path, DBusService::name,
                                               QStringLiteral("Activate"));
    call.setArguments({list});
    call.setAutoStartService(false);
    constexpr int patience = 5000;
    const QDBusMessage reply = bus.call(call, QDBus::Block, patience);
    if (reply.type() == QDBusMessage::ReplyMessage) {
      return Start::handedOver;
    }
    failure = reply.errorMessage();
    if (reply.errorName() != QLatin1String("org.freedesktop.DBus.Error.ServiceUnknown") &&
        reply.errorName() != QLatin1String("org.freedesktop.DBus.Error.NameHasNoOwner")) {
      break;
    }
  }
  log("Another instance runs but does not answer: " + failure.toStdString());
  return Start::noAnswer;
}

}  // namespace quillmark
