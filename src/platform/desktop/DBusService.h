#pragma once

#include <QDBusVirtualObject>
#include <functional>
#include <string>
#include <vector>

namespace quillmark {

/// The interface of the running program for others: object /org/quillmark/Quillmark, interface org.quillmark.Quillmark.
///
///   Activate(as arguments)   a second start hands over its command line, without the program's name
///   RunCommand(s slug)       error org.quillmark.Quillmark.Error.NoSuchCommand when there is none
///   OpenCommandMenu()
///   Service(s text)          a text sent by the user from another program: opens the command menu
///
/// The handlers run on the main thread; the caller gets the answer when they return.
class DBusService : public QDBusVirtualObject {
 public:
  static const QString name;  ///< of the service and of the interface
  static const QString path;

  std::function<void(const std::vector<std::string>& arguments)> activate;
  std::function<bool(const std::string& slug)> runCommand;  ///< false when there is no such command
  std::function<void()> openCommandMenu;
  std::function<void(const std::string& text)> service;

  QString introspect(const QString& path) const override;
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

 private:
  QDBusMessage answer(const QDBusMessage& message) const;
};

}  // namespace quillmark
