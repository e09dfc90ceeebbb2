#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/Expected.h"
#include "base/RawValue.h"
#include "base/Signal.h"
#include "platform/DefaultsValue.h"
#include "platform/StoredKeys.h"

namespace quillmark {

/// What a stored value must survive. A counter, or a flag that the next start resets, need not wait for the disk.
enum class Durability { lossOfPower, endOfProcess };

/// The user's defaults database: typed values under string keys, kept across restarts. A value is written whole or
/// not at all. A second process may read and write it at the same time. Main thread only.
class UserDefaults {
 public:
  UserDefaults() = default;
  UserDefaults(const UserDefaults&) = delete;
  UserDefaults& operator=(const UserDefaults&) = delete;
  virtual ~UserDefaults() = default;

  virtual std::optional<DefaultsValue> value(std::string_view key) const = 0;
  /// A number that differs for each value the key has had; 0 while it has none.
  virtual std::uint64_t revision(std::string_view key) const = 0;
  /// Returns once everything set so far would survive a loss of power.
  virtual void synchronize() = 0;

  /// False when the value could not be stored; the old one stays. `refused` reports it too.
  bool set(std::string_view key, DefaultsValue value, Durability durability = Durability::lossOfPower) {
    return change(key, std::move(value), durability);
  }
  /// The same for removing a value. True when there is none.
  bool remove(std::string_view key, Durability durability = Durability::lossOfPower) {
    return change(key, std::nullopt, durability);
  }

  /// Runs an edit of several values as one: it reads what is stored now, no other process writes in between, and when
  /// it returns true all that it set is stored, or nothing. Observers are notified afterwards. A transaction inside
  /// another one is part of that one. False when the edit returns false or anything could not be stored.
  [[nodiscard]] bool transaction(const std::function<bool()>& edit, Durability durability = Durability::lossOfPower);

  /// The value under the key when it has this type; nothing otherwise.
  template <class T>
  std::optional<T> get(std::string_view key) const {
    auto found = value(key);
    if (!found || !std::holds_alternative<T>(*found)) {
      return std::nullopt;
    }
    return std::get<T>(std::move(*found));
  }

  /// A key was set or removed, by this process or by another one.
  Signal<const std::string&> changed;
  /// Emitted with a short reason when something could not be stored that should survive a loss of power: the user must
  /// be told. What need not survive that is only logged.
  Signal<const std::string&> refused;

 protected:
  /// Stores or removes one value, in the open transaction or on its own: true when observers must be notified, or the
  /// reason for the failure.
  virtual Expected<bool, std::string> write(const std::string& key, const std::optional<DefaultsValue>& value,
                                            Durability durability) = 0;
  /// From begin() to commit() or rollBack() no other process writes. Each returns the reason when it fails.
  virtual Expected<void, std::string> begin(Durability durability) = 0;
  virtual Expected<void, std::string> commit(Durability durability) = 0;
  virtual void rollBack() = 0;

 private:
  struct Transaction {
    std::vector<std::string> touched;  // keys in the order of their first change
    bool refused = false;              // one of its writes failed, so the whole transaction fails
    std::string reason;
  };

  bool change(std::string_view key, std::optional<DefaultsValue> value, Durability durability);
  void refuse(const std::string& what, const std::string& reason, Durability durability);

  std::optional<Transaction> transaction_;
};

/// A value bound to a key: reads its fallback while the key is absent and never writes the fallback back. An
/// enumeration is stored as its raw string; an optional value is absent while nothing is stored, and storing nothing
/// removes it.
template <class T>
class Setting {
 public:
  Setting(UserDefaults& defaults, KeyFor<T> key, Durability durability = Durability::lossOfPower)
      : defaults_(defaults), key_(key), durability_(durability) {}

  T get() const {
    if constexpr (std::is_enum_v<T>) {
      const auto raw = defaults_.get<std::string>(key_.name);
      return (raw ? fromRawValue<T>(*raw) : std::nullopt).value_or(key_.fallback);
    } else if constexpr (isOptional) {
      return defaults_.get<typename T::value_type>(key_.name);
    } else {
      return defaults_.get<T>(key_.name).value_or(key_.fallback);
    }
  }

  /// False when the value could not be stored; the old one stays, and UserDefaults::refused was emitted.
  bool set(const T& value) {
    if constexpr (std::is_enum_v<T>) {
      return defaults_.set(key_.name, std::string(rawValue(value)), durability_);
    } else if constexpr (isOptional) {
      return value ? defaults_.set(key_.name, *value, durability_) : defaults_.remove(key_.name, durability_);
    } else {
      return defaults_.set(key_.name, value, durability_);
    }
  }

  const char* key() const { return key_.name; }

  /// Notified of every change of the key, by this process or another.
  [[nodiscard]] Connection observe(std::function<void(const T&)> handler) {
    return defaults_.changed.connect([this, handler = std::move(handler)](const std::string& key) {
      if (key == key_.name) {
        handler(get());
      }
    });
  }

 private:
  static constexpr bool isOptional = requires(T value) { value.has_value(); };

  UserDefaults& defaults_;
  KeyFor<T> key_;
  Durability durability_;
};

}  // namespace quillmark
