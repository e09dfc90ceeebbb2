#include "platform/desktop/DBusService.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <algorithm>
#include <iterator>
#include <string_view>

namespace quillmark {

const QString DBusService::name = QStringLiteral("org.quillmark.Quillmark");
const QString DBusService::path = QStringLiteral("/org/quillmark/Quillmark");

namespace {

/// A method takes one argument or, with an empty signature, none.
struct Method {
  const char* member;
  const char* signature;
  const char* argument;
  QDBusMessage (*answer)(const DBusService& service, const QDBusMessage& call);
};

const Method methods[] = {
    {"Activate", "as", "arguments",
     [](const DBusService& service, const QDBusMessage& call) {
       std::vector<std::string> arguments;
       for (const QString& argument : call.arguments().constFirst().toStringList()) {
         arguments.push_back(argument.toStdString());
       }
       if (service.activate) {
         service.activate(arguments);
       }
       return call.createReply();
     }},
    {"RunCommand", "s", "slug",
     [](const DBusService& service, const QDBusMessage& call) {
       const QString slug = call.arguments().constFirst().toString();
       if (!service.runCommand || !service.runCommand(slug.toStdString())) {
         return call.createErrorReply(DBusService::name + QStringLiteral(".Error.NoSuchCommand"),
                                      QStringLiteral("There is no command \"%1\"").arg(slug));
       }
       return call.createReply();
     }},
    {"OpenCommandMenu", "", "",
     [](const DBusService& service, const QDBusMessage& call) {
       if (service.openCommandMenu) {
         service.openCommandMenu();
       }
       return call.createReply();
     }},
    {"Service", "s", "text",
     [](const DBusService& service, const QDBusMessage& call) {
       if (service.service) {
         service.service(call.arguments().constFirst().toString().toStdString());
       }
       return call.createReply();
     }},
};

}  // namespace

QString DBusService::introspect(const QString& of) const {
  if (of != path) {
    return {};
  }
  QString xml = QStringLiteral("  <interface name=\"%1\">\n").arg(name);
  for (const Method& method : methods) {
    xml += QStringLiteral("    <method name=\"%1\">\n").arg(QLatin1String(method.member));
    if (!std::string_view(method.signature).empty()) {
      xml += QStringLiteral("      <arg name=\"%1\" type=\"%2\" direction=\"in\"/>\n")
                 .arg(QLatin1String(method.argument), QLatin1String(method.signature));
    }
    xml += QStringLiteral("    </method>\n");
  }
  return xml + QStringLiteral("  </interface>\n");
}

bool DBusService::handleMessage(const QDBusMessage& message, const QDBusConnection& connection) {
  if (message.type() != QDBusMessage::MethodCallMessage) {
    return false;
  }
  // A call may omit the interface; the standard interfaces are answered by the toolkit.
  if (!message.interface().isEmpty() && message.interface() != name) {
    return false;
  }
  const QDBusMessage reply = answer(message);
  if (message.isReplyRequired()) {
    connection.send(reply);
  }
  return true;
}

QDBusMessage DBusService::answer(const QDBusMessage& message) const {
  const auto* const method = std::ranges::find_if(
      methods, [&](const Method& candidate) { return message.member() == QLatin1String(candidate.member); });
  if (method == std::end(methods)) {
    return message.createErrorReply(QDBusError::UnknownMethod,
                                    QStringLiteral("%1 has no method \"%2\"").arg(name, message.member()));
  }
  if (message.signature() != QLatin1String(method->signature)) {
    return message.createErrorReply(QDBusError::InvalidArgs,
                                    QStringLiteral("%1 takes \"%2\", not \"%3\"")
                                        .arg(message.member(), QLatin1String(method->signature), message.signature()));
  }
  return method->answer(*this, message);
}

}  // namespace quillmark
