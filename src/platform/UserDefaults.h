#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "base/RawValue.h"
#include "base/Signal.h"
#include "platform/StoredKeys.h"

namespace quillmark {

/// Bytes of a stored value, told apart from a string.
struct Data {
  std::string bytes;
  friend bool operator==(const Data&, const Data&) = default;
};

using DefaultsValue = std::variant<bool, std::int64_t, double, std::string, Data, std::vector<std::string>>;

/// What a stored value must survive. A counter or a flag that the next start puts right needs not wait for the disk.
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
  /// False when the value could not be stored; the old one then stands, and a log line says why.
  bool set(std::string_view key, DefaultsValue value, Durability durability = Durability::lossOfPower) {
    return store(key, std::move(value), durability);
  }
  virtual void remove(std::string_view key) = 0;
  /// Returns when everything set so far would survive a loss of power.
  virtual void synchronize() = 0;

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

 protected:
  virtual bool store(std::string_view key, DefaultsValue value, Durability durability) = 0;
};

/// A value bound to a key: reads its default while the key is absent and never writes the default back. An
/// enumeration is stored as its raw string; an optional value is absent while nothing is stored, and removed by storing
/// nothing.
template <class T>
class Setting {
 public:
  Setting(UserDefaults& defaults, const StoredKey& key, Durability durability = Durability::lossOfPower)
      : defaults_(defaults), key_(key), durability_(durability) {}

  T get() const {
    if constexpr (std::is_enum_v<T>) {
      const auto raw = defaults_.get<std::string>(key_.name);
      const auto value = raw ? fromRawValue<T>(*raw) : std::nullopt;
      return value ? *value : *fromRawValue<T>(key_.fallback);
    } else if constexpr (isOptional) {
      return defaults_.get<typename T::value_type>(key_.name);
    } else {
      return defaults_.get<T>(key_.name).value_or(fallback());
    }
  }

  void set(const T& value) {
    if constexpr (std::is_enum_v<T>) {
      defaults_.set(key_.name, std::string(rawValue(value)), durability_);
    } else if constexpr (isOptional) {
      if (value) {
        defaults_.set(key_.name, *value, durability_);
      } else {
        defaults_.remove(key_.name);
      }
    } else {
      defaults_.set(key_.name, value, durability_);
    }
  }

  const char* key() const { return key_.name; }

  /// Tells of every change of the key, whoever made it.
  [[nodiscard]] Connection observe(std::function<void(const T&)> handler) {
    return defaults_.changed.connect([this, handler = std::move(handler)](const std::string& key) {
      if (key == key_.name) {
        handler(get());
      }
    });
  }

 private:
  static constexpr bool isOptional = requires(T value) { value.has_value(); };

  T fallback() const {
    if constexpr (std::is_same_v<T, bool>) {
      return std::string_view(key_.fallback) == "true";
    } else if constexpr (std::is_arithmetic_v<T>) {
      return {};  // every number starts at 0
    } else {
      return key_.fallback;
    }
  }

  UserDefaults& defaults_;
  const StoredKey& key_;
  Durability durability_;
};

}  // namespace quillmark
