#pragma once

#include <QDBusConnection>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace quillmark {

/// A private session bus for the test.
struct SessionBus : testing::Test {
  void SetUp() override {
    daemon.start(QStringLiteral("dbus-daemon"),
                 {QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--print-address"),
                  QStringLiteral("--address=unix:dir=") + folder.path()});
    ASSERT_TRUE(daemon.waitForReadyRead(20000)) << "this test needs dbus-daemon";
    address = QString::fromLatin1(daemon.readLine()).trimmed();
  }
  void TearDown() override {
    for (const QString& name : connections) {
      QDBusConnection::disconnectFromBus(name);
    }
    daemon.kill();
    daemon.waitForFinished();
  }

  QDBusConnection connect() {
    connections << QStringLiteral("test %1").arg(connections.size());
    return QDBusConnection::connectToBus(address, connections.last());
  }

  QTemporaryDir folder;
  QProcess daemon;
  QString address;
  QStringList connections;
};

}  // namespace quillmark
