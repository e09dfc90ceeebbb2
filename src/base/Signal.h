#pragma once

#include <functional>
#include <utility>
#include <vector>

#include <sigc++/connection.h>
#include <sigc++/signal.h>

namespace quillmark {

/// Keeps one handler connected to a signal; destroying it disconnects the handler.
class Connection {
 public:
  Connection() = default;
  explicit Connection(const sigc::connection& connection) : connection_(connection) {}
  Connection(Connection&& other) noexcept : connection_(std::exchange(other.connection_, {})) {}
  Connection& operator=(Connection&& other) noexcept {
    if (this != &other) {
      connection_.disconnect();
      connection_ = std::exchange(other.connection_, {});
    }
    return *this;
  }
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;
  ~Connection() { connection_.disconnect(); }

 private:
  sigc::connection connection_;
};

/// The connections of one object to the signals it listens to; destroying it disconnects them.
class Connections {
 public:
  Connections& operator+=(Connection connection) {
    all_.push_back(std::move(connection));
    return *this;
  }

 private:
  std::vector<Connection> all_;
};

/// A list of handlers. A const reference allows connecting only; the owner emits. Main thread only.
template <class... Args>
class Signal {
 public:
  [[nodiscard]] Connection connect(std::function<void(Args...)> handler) const {
    return Connection(signal_.connect(std::move(handler)));
  }

  void emit(Args... args) { signal_.emit(args...); }

 private:
  mutable sigc::signal<void(Args...)> signal_;
};

/// A value that notifies its observers when it is set. A const reference allows reading and observing only. Main thread
/// only.
template <class T>
class Observable {
 public:
  Observable() = default;
  explicit Observable(T value) : value_(std::move(value)) {}
  Observable(const Observable&) = delete;
  Observable& operator=(const Observable&) = delete;

  const T& get() const { return value_; }
  operator const T&() const { return value_; }
  const T* operator->() const { return &value_; }

  /// Notifies the observers even when the value is equal.
  void set(T value) {
    value_ = std::move(value);
    changed_.emit(value_);
  }

  /// Changes the value in place, then notifies the observers once.
  template <class Change>
  void mutate(Change&& change) {
    std::forward<Change>(change)(value_);
    changed_.emit(value_);
  }

  /// Changes the value without notifying anyone.
  template <class Change>
  void mutateQuietly(Change&& change) {
    std::forward<Change>(change)(value_);
  }

  [[nodiscard]] Connection observe(std::function<void(const T&)> handler) const {
    return changed_.connect(std::move(handler));
  }

  /// Like observe(), and also calls the handler at once with the current value.
  [[nodiscard]] Connection bind(std::function<void(const T&)> handler) const {
    handler(value_);
    return observe(std::move(handler));
  }

 private:
  T value_{};
  Signal<const T&> changed_;
};

}  // namespace quillmark
