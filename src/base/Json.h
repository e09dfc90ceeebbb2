#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include <nlohmann/json.hpp>

#include "base/RawValue.h"
#include "base/Uuid.h"

namespace quillmark {

using Json = nlohmann::json;

/// A stored or received record does not have the expected form. what() begins with the path of the bad field, such as
/// `choices[0].message.role`. Thrown by the readers below; caught by the store or the transport that called them.
class DecodingError : public std::runtime_error {
 public:
  DecodingError(const std::string& path, const std::string& problem)
      : std::runtime_error(path.empty() ? problem : path + ": " + problem) {}
};

/// Parses strictly (RFC 8259): invalid UTF-8, comments and trailing text are DecodingErrors.
Json parseJson(std::string_view text);

/// One line without blanks. Invalid UTF-8 inside strings becomes U+FFFD, so writing never fails.
std::string toText(const Json& value);
/// The same over several lines, indented by two blanks per level.
std::string toPrettyText(const Json& value);

/// A value that must have this type; `path` is where it is. Any other type is a DecodingError.
template <class T>
T decodeJson(const Json& value, const std::string& path);

template <>
std::string decodeJson<std::string>(const Json& value, const std::string& path);
template <>
bool decodeJson<bool>(const Json& value, const std::string& path);
/// Accepts a whole number that fits, written as 3 or as 3.0.
template <>
std::int64_t decodeJson<std::int64_t>(const Json& value, const std::string& path);
template <>
double decodeJson<double>(const Json& value, const std::string& path);
template <>
Uuid decodeJson<Uuid>(const Json& value, const std::string& path);

/// Reads the fields of one JSON object. Keys that are never read are ignored; null reads as missing.
class JsonObject {
 public:
  /// Throws when the value is not an object. The value must outlive the reader.
  explicit JsonObject(const Json& value, std::string path = {});

  template <class T>
  T required(const char* key) const {
    return decode<T>(present(key), pathOf(key));
  }

  template <class T>
  std::optional<T> optional(const char* key) const {
    const Json* field = find(key);
    return field == nullptr ? std::nullopt : std::optional<T>(decode<T>(*field, pathOf(key)));
  }

  template <class T>
  T valueOr(const char* key, T fallback) const {
    const Json* field = find(key);
    return field == nullptr ? std::move(fallback) : decode<T>(*field, pathOf(key));
  }

  /// A reader for a field that must be an object. It refers to this reader's value.
  JsonObject requiredObject(const char* key) const;
  /// A field that must be an array; `element` reads each element, given its path.
  template <class T>
  std::vector<T> requiredArray(const char* key, const std::function<T(const Json&, const std::string&)>& element) const;

  /// The raw field, or nullptr when it is missing or null.
  const Json* find(const char* key) const;
  /// The raw field. Throws when it is missing or null.
  const Json& present(const char* key) const;
  std::string pathOf(const char* key) const;
  const std::string& path() const { return path_; }

 private:
  template <class T>
  static T decode(const Json& field, const std::string& path) {
    if constexpr (std::is_enum_v<T>) {
      const auto raw = decodeJson<std::string>(field, path);
      const auto value = fromRawValue<T>(raw);
      if (!value) {
        throw DecodingError(path, "\"" + raw + "\" is not a known value");
      }
      return *value;
    } else {
      return decodeJson<T>(field, path);
    }
  }

  const Json& value_;
  std::string path_;
};

/// Reads a JSON array; the reader is called with each element and its path.
template <class T>
std::vector<T> decodeArray(const Json& value, const std::function<T(const Json&, const std::string&)>& element,
                           const std::string& path = {}) {
  if (!value.is_array()) {
    throw DecodingError(path, "is not an array");
  }
  std::vector<T> result;
  result.reserve(value.size());
  for (std::size_t i = 0; i < value.size(); ++i) {
    result.push_back(element(value[i], path + "[" + std::to_string(i) + "]"));
  }
  return result;
}

template <class T>
std::vector<T> JsonObject::requiredArray(const char* key,
                                         const std::function<T(const Json&, const std::string&)>& element) const {
  return decodeArray<T>(present(key), element, pathOf(key));
}

}  // namespace quillmark
