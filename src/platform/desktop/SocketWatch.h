#pragma once

#include <QMetaObject>
#include <QSocketNotifier>
#include <functional>

namespace quillmark {

/// Calls a function on the main thread whenever a descriptor is readable, for as long as the watch lives.
class SocketWatch {
 public:
  /// `readableAndBeforeSleep` also calls it each time before the event loop sleeps: a connection that reads ahead while waiting for a reply
  /// buffers events that no longer make the descriptor readable.
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
