#pragma once

#include <QDBusConnection>
#include <string>
#include <vector>

namespace quillmark {

class DBusService;

/// At most one running instance per session bus.
class SingleInstance {
 public:
  enum class Start {
    first,       ///< this is the only one; `service` answers on the bus from now on
    handedOver,  ///< another one runs and has taken the arguments: exit
    noAnswer,    ///< another one runs but did not take them: exit with a failure
  };

  /// Without a session bus every start is the first. Blocks while it hands over, 5 s at most.
  static Start claim(QDBusConnection bus, DBusService& service, const std::vector<std::string>& arguments);
};

}  // namespace quillmark
