#include "base/Json.h"

#include <cmath>

namespace quillmark {

Json parseJson(std::string_view text) {
  try {
    return Json::parse(text);
  } catch (const Json::parse_error& error) {
    // The library's own message quotes the text, which may hold a secret, and this one ends up in the log.
    throw DecodingError({}, "is not valid JSON at byte " + std::to_string(error.byte));
  } catch (const Json::out_of_range&) {
    throw DecodingError({}, "has a number out of range");
  }
}

std::string toText(const Json& value) { return value.dump(-1, ' ', false, Json::error_handler_t::replace); }

std::string toPrettyText(const Json& value) { return value.dump(2, ' ', false, Json::error_handler_t::replace); }

template <>
std::string decodeJson<std::string>(const Json& value, const std::string& path) {
  if (!value.is_string()) {
    throw DecodingError(path, "is not a string");
  }
  return value.get<std::string>();
}

template <>
bool decodeJson<bool>(const Json& value, const std::string& path) {
  if (!value.is_boolean()) {
    throw DecodingError(path, "is not a boolean");
  }
  return value.get<bool>();
}

template <>
std::int64_t decodeJson<std::int64_t>(const Json& value, const std::string& path) {
  if (value.is_number_unsigned() && value.get<std::uint64_t>() > std::uint64_t{INT64_MAX}) {
    throw DecodingError(path, "is too large");
  }
  if (value.is_number_integer()) {
    return value.get<std::int64_t>();
  }
  if (value.is_number_float()) {
    const double number = value.get<double>();
    constexpr double limit = 9223372036854775808.0;  // 2^63, the first value that does not fit
    if (std::trunc(number) == number && number >= -limit && number < limit) {
      return static_cast<std::int64_t>(number);
    }
  }
  throw DecodingError(path, "is not an integer");
}

template <>
double decodeJson<double>(const Json& value, const std::string& path) {
  if (!value.is_number()) {
    throw DecodingError(path, "is not a number");
  }
  return value.get<double>();
}

template <>
Uuid decodeJson<Uuid>(const Json& value, const std::string& path) {
  const auto uuid = Uuid::parse(decodeJson<std::string>(value, path));
  if (!uuid) {
    throw DecodingError(path, "is not a UUID");
  }
  return *uuid;
}

JsonObject::JsonObject(const Json& value, std::string path) : value_(value), path_(std::move(path)) {
  if (!value.is_object()) {
    throw DecodingError(path_, "is not an object");
  }
}

const Json* JsonObject::find(const char* key) const {
  const auto found = value_.find(key);
  return found == value_.end() || found->is_null() ? nullptr : &*found;
}

const Json& JsonObject::present(const char* key) const {
  const Json* field = find(key);
  if (field == nullptr) {
    throw DecodingError(pathOf(key), "is missing");
  }
  return *field;
}

JsonObject JsonObject::requiredObject(const char* key) const { return JsonObject(present(key), pathOf(key)); }

std::string JsonObject::pathOf(const char* key) const { return path_.empty() ? key : path_ + "." + key; }

}  // namespace quillmark
