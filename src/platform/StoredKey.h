#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <type_traits>
#include <variant>
#include <vector>

#include "base/RawValue.h"
#include "platform/DefaultsValue.h"

namespace quillmark {

/// How a value is kept in the user's defaults database.
enum class StoredForm { boolean, integer, number, string, strings, data };

/// How much of a value a list of all values shows.
enum class Disclosure { value, size, presence };

/// In place of a fallback: the key has no value until one is stored.
struct NoFallback {};
inline constexpr NoFallback noFallback;

namespace detail {

template <class T>
struct Stored;
template <>
struct Stored<bool> {
  using Fallback = bool;
  static constexpr StoredForm form = StoredForm::boolean;
};
template <>
struct Stored<std::int64_t> {
  using Fallback = std::int64_t;
  static constexpr StoredForm form = StoredForm::integer;
};
template <>
struct Stored<double> {
  using Fallback = double;
  static constexpr StoredForm form = StoredForm::number;
};
template <>
struct Stored<std::string> {
  using Fallback = const char*;
  static constexpr StoredForm form = StoredForm::string;
};
template <>
struct Stored<std::vector<std::string>> {
  using Fallback = NoFallback;
  static constexpr StoredForm form = StoredForm::strings;
};
template <>
struct Stored<Data> {
  using Fallback = NoFallback;
  static constexpr StoredForm form = StoredForm::data;
};
template <class T>
struct Stored<std::optional<T>> {
  using Fallback = NoFallback;
  static constexpr StoredForm form = Stored<T>::form;
};

}  // namespace detail

/// A key of the defaults database with the type of its value, and the fallback that applies while none is stored. An
/// optional type has no fallback; a choice is a std::string that holds the raw value of an enumerator (RawValues).
template <class T>
struct StoredKey {
  using Fallback = typename detail::Stored<T>::Fallback;
  static constexpr StoredForm form = detail::Stored<T>::form;

  const char* name;
  Fallback fallback;
  const char* meaning;  ///< for humans
  Disclosure shown = Disclosure::value;
};

/// What a Setting<T> takes: a key of the same type or, for an enumeration, a string key whose fallback names one of its
/// cases. Anything else does not compile.
template <class T>
struct KeyFor {
  const char* name;
  typename StoredKey<T>::Fallback fallback;

  consteval KeyFor(const StoredKey<T>& key)  // NOLINT(google-explicit-constructor): a key is one for its own type
      : name(key.name), fallback(key.fallback) {}
};

template <class Choice>
requires std::is_enum_v<Choice>
struct KeyFor<Choice> {
  const char* name;
  Choice fallback;

  consteval KeyFor(const StoredKey<std::string>& key)  // NOLINT(google-explicit-constructor)
      : name(key.name), fallback(fromRawValue<Choice>(key.fallback).value()) {}
};

/// A key without its type, for lists of all keys.
struct AnyStoredKey {
  const char* name;
  StoredForm form;
  std::variant<NoFallback, bool, std::int64_t, double, const char*> fallback;
  const char* meaning;
  Disclosure shown;

  template <class T>
  constexpr AnyStoredKey(const StoredKey<T>& key)  // NOLINT(google-explicit-constructor)
      : name(key.name), form(key.form), fallback(key.fallback), meaning(key.meaning), shown(key.shown) {}

  /// Whether this is the common prefix of several keys.
  constexpr bool isFamily() const { return std::string_view(name).ends_with('_'); }
};

}  // namespace quillmark
