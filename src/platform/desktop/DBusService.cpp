#include "platform/desktop/DBusService.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>

namespace quillmark {

const QString DBusService::name = QStringLiteral("org.quillmark.Quillmark");
const QString DBusService::path = QStringLiteral("/org/quillmark/Quillmark");

QString DBusService::introspect(const QString& of) const {
  if (of != path) {
    return {};
  }
  return QStringLiteral(R"(  <interface name="org.quillmark.Quillmark">
    <method name="Activate">
      <arg name="arguments" type="as" direction="in"/>
    </method>
    <method name="RunCommand">
      <arg name="slug" type="s" direction="in"/>
    </method>
    <method name="OpenCommandMenu"/>
  </interface>
)");
}

bool DBusService::handleMessage(const QDBusMessage& message, const QDBusConnection& connection) {
  if (message.type() != QDBusMessage::MethodCallMessage) {
    return false;
  }
  // A call may leave out the interface; the standard ones are the toolkit's to answer.
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
  const auto hasSignature = [&](const char* signature) { return message.signature() == QLatin1String(signature); };
  const auto wrongArguments = [&](const char* expected) {
    return message.createErrorReply(QDBusError::InvalidArgs,
                                    QStringLiteral("%1 takes \"%2\", not \"%3\"")
                                        .arg(message.member(), QLatin1String(expected), message.signature()));
  };

  if (message.member() == QLatin1String("Activate")) {
    if (!hasSignature("as")) {
      return wrongArguments("as");
    }
    std::vector<std::string> arguments;
    for (const QString& argument : message.arguments().constFirst().toStringList()) {
      arguments.push_back(argument.toStdString());
    }
    if (activate) {
      activate(arguments);
    }
    return message.createReply();
  }
  if (message.member() == QLatin1String("RunCommand")) {
    if (!hasSignature("s")) {
      return wrongArguments("s");
    }
    const QString slug = message.arguments().constFirst().toString();
    if (!runCommand || !runCommand(slug.toStdString())) {
      return message.createErrorReply(name + QStringLiteral(".Error.NoSuchCommand"),
                                      QStringLiteral("There is no command \"%1\"").arg(slug));
    }
    return message.createReply();
  }
  if (message.member() == QLatin1String("OpenCommandMenu")) {
    if (!hasSignature("")) {
      return wrongArguments("");
    }
    if (openCommandMenu) {
      openCommandMenu();
    }
    return message.createReply();
  }
  return message.createErrorReply(QDBusError::UnknownMethod,
                                  QStringLiteral("%1 has no method \"%2\"").arg(name, message.member()));
}

}  // namespace quillmark
