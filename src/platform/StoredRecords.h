#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "base/Json.h"
#include "platform/UserDefaults.h"

namespace quillmark {

/// A list of records kept as one JSON array under one key.
template <class T>
struct StoredRecords {
  enum class Found { nothing, undecodable, records };

  Found found = Found::nothing;
  std::vector<T> records;
  std::string problem;  ///< why the value does not decode

  static StoredRecords load(const UserDefaults& defaults, const std::string& key,
                            const std::function<T(const Json&, const std::string&)>& reader) {
    const auto data = defaults.get<Data>(key);
    if (!data) {
      return {};
    }
    try {
      return {Found::records, decodeArray<T>(parseJson(data->bytes), reader), {}};
    } catch (const DecodingError& error) {
      return {Found::undecodable, {}, error.what()};
    }
  }
};

/// Copies a value that does not decode to a key of its own, so that what replaces it loses nothing. A log line names
/// the key.
void setAside(UserDefaults& defaults, const std::string& key, const std::string& problem);

/// False when the list could not be stored; the old one then stands.
template <class T>
bool storeRecords(UserDefaults& defaults, const std::string& key, const std::vector<T>& records) {
  Json array = Json::array();
  for (const auto& record : records) {
    array.push_back(toJson(record));
  }
  return defaults.set(key, Data{toText(array)});
}

}  // namespace quillmark
