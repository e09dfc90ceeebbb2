#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QThread>
#include <optional>
#include <thread>

#include <gmock/gmock.h>

#include "base/Log.h"
#include "desktop_qt/SessionBus.h"
#include "desktop_qt/WaitFor.h"
#include "platform/desktop/DBusService.h"
#include "platform/desktop/SingleInstance.h"

namespace quillmark {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

struct SingleInstanceTest : SessionBus {
  /// Runs a blocking call on another thread, for the main thread has to answer meanwhile.
  template <class Function>
  auto beside(Function function) {
    std::optional<decltype(function())> result;
    std::atomic<bool> done = false;
    std::thread thread([&] {
      result = function();
      done = true;
    });
    EXPECT_TRUE(waitFor([&] { return done.load(); }));
    thread.join();
    return *result;
  }

  QDBusMessage call(const QString& of, const QString& member, const QVariantList& arguments = {}) {
    auto message = QDBusMessage::createMethodCall(DBusService::name, DBusService::path, of, member);
    message.setArguments(arguments);
    QDBusConnection bus = connect();
    return beside([&] { return bus.call(message, QDBus::Block, 15000); });
  }

  DBusService service;
};

TEST_F(SingleInstanceTest, aSecondStartHandsItsArgumentsToTheFirst) {
  std::vector<std::string> received;
  service.activate = [&](const std::vector<std::string>& arguments) { received = arguments; };
  ASSERT_EQ(SingleInstance::claim(connect(), service, {}), SingleInstance::Start::first);

  DBusService second;
  second.activate = [](const auto&) { FAIL() << "the second one must not serve anybody"; };
  const auto start = beside([&] {
    return SingleInstance::claim(connect(), second, {"quillmark://run?a=b&c", "größer 🪶"});
  });
  EXPECT_EQ(start, SingleInstance::Start::handedOver);
  EXPECT_THAT(received, ElementsAre("quillmark://run?a=b&c", "größer 🪶"));
}

TEST_F(SingleInstanceTest, aStartAfterTheFirstHasQuitIsTheFirst) {
  ASSERT_EQ(SingleInstance::claim(connect(), service, {}), SingleInstance::Start::first);
  QDBusConnection::disconnectFromBus(connections.last());
  DBusService next;
  EXPECT_EQ(beside([&] { return SingleInstance::claim(connect(), next, {}); }), SingleInstance::Start::first);
}

TEST_F(SingleInstanceTest, withoutABusEveryStartIsTheFirst) {
  std::string lines;
  setLogSink([&](std::string_view line) { lines += line; });
  const auto start = SingleInstance::claim(QDBusConnection(QStringLiteral("no such connection")), service, {});
  setLogSink([](std::string_view) {});
  EXPECT_EQ(start, SingleInstance::Start::first);
  EXPECT_THAT(lines, HasSubstr("No session bus"));
}

TEST_F(SingleInstanceTest, otherProgramsRunCommandsOpenTheMenuAndSendTexts) {
  std::string ran;
  std::string received;
  int opened = 0;
  service.runCommand = [&](const std::string& slug) {
    ran = slug;
    return slug == "improve-text";
  };
  service.openCommandMenu = [&] { ++opened; };
  service.service = [&](const std::string& text) { received = text; };
  ASSERT_EQ(SingleInstance::claim(connect(), service, {}), SingleInstance::Start::first);

  EXPECT_EQ(call(DBusService::name, "RunCommand", {"improve-text"}).type(), QDBusMessage::ReplyMessage);
  EXPECT_EQ(ran, "improve-text");
  EXPECT_EQ(call({}, "OpenCommandMenu").type(), QDBusMessage::ReplyMessage) << "a call may leave out the interface";
  EXPECT_EQ(opened, 1);
  EXPECT_EQ(call(DBusService::name, "Service", {"größer 🪶"}).type(), QDBusMessage::ReplyMessage);
  EXPECT_EQ(received, "größer 🪶");
  EXPECT_THAT(call("org.freedesktop.DBus.Introspectable", "Introspect").arguments().value(0).toString().toStdString(),
              HasSubstr(R"(<method name="OpenCommandMenu")"));
  EXPECT_EQ(call(DBusService::name, "RunCommand", {"no-such"}).errorName(), DBusService::name + ".Error.NoSuchCommand");
}

TEST_F(SingleInstanceTest, wrongCallsGetTheErrorsOfTheBus) {
  service.runCommand = [](const std::string&) { return true; };
  ASSERT_EQ(SingleInstance::claim(connect(), service, {}), SingleInstance::Start::first);
  const QString invalid = "org.freedesktop.DBus.Error.InvalidArgs";

  EXPECT_EQ(call(DBusService::name, "RunCommand").errorName(), invalid);
  EXPECT_EQ(call(DBusService::name, "RunCommand", {7}).errorName(), invalid);
  EXPECT_EQ(call(DBusService::name, "RunCommand", {"a", "b"}).errorName(), invalid);
  EXPECT_EQ(call(DBusService::name, "Activate", {"not a list"}).errorName(), invalid);
  EXPECT_EQ(call(DBusService::name, "OpenCommandMenu", {true}).errorName(), invalid);
  EXPECT_EQ(call(DBusService::name, "Sing").errorName(), "org.freedesktop.DBus.Error.UnknownMethod");
  EXPECT_EQ(call("org.example.Other", "Activate").type(), QDBusMessage::ErrorMessage);
}

}  // namespace
}  // namespace quillmark
