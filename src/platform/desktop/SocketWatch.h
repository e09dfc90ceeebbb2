#pragma once

#include <QMetaObject>
#include <QSocketNotifier>
#include <functional>

namespace quillmark {

/// Calls a function on the main thread whenever a descriptor has something to read, for as long as the watch lives.
class SocketWatch {
 public:
  /// Connections that read ahead while they await a reply hold events of which the descriptor knows nothing: these are
  /// to be looked at before the event loop goes to sleep, too.
  enum class When { readable, readableAndBeforeSleep };

  SocketWatch(int descriptor, std::function<void()> ready, When when = When::readable);
  SocketWatch(const SocketWatch&) = delete;
  SocketWatch& operator=(const SocketWatch&) = delete;
  ~SocketWatch();

 private:
  QSocketNotifier notifier_;
  QMetaObject::Connection beforeSleep_;
};

}  // namespace quillmark
