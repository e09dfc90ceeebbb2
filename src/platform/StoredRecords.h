#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/Json.h"
#include "platform/UserDefaults.h"

namespace quillmark {

/// How records are written: on one line, or laid out for people.
enum class JsonLayout { compact, pretty };

/// The JSON array of a list.
template <class T>
std::string encodeRecords(const std::vector<T>& records, JsonLayout layout = JsonLayout::compact) {
  Json array = Json::array();
  for (const auto& record : records) {
    array.push_back(toJson(record));
  }
  return layout == JsonLayout::pretty ? toPrettyText(array) : toText(array);
}

/// One key whose value can be of no use to this version, and is then kept under a key of its own before it is replaced.
class StoredValue {
 public:
  StoredValue(UserDefaults& defaults, std::string key) : defaults_(defaults), key_(std::move(key)) {}

  const std::string& key() const { return key_; }

  /// Copies the present value to `<key>.undecodable-N`, once. A log line names that key. Until the copy has succeeded
  /// replace() stores nothing.
  void setAside(const std::string& problem);
  /// False when nothing could be stored; the old value then stands.
  bool replace(DefaultsValue value, Durability durability = Durability::lossOfPower);

 protected:
  UserDefaults& defaults_;

 private:
  bool copyAside();

  std::string key_;
  std::optional<std::string> pending_;  // why the present value is still to be set aside
};

/// A list of records kept as one JSON array of bytes under one key.
template <class T>
class StoredRecords : public StoredValue {
 public:
  using Reader = std::function<T(const Json&, const std::string&)>;

  StoredRecords(UserDefaults& defaults, std::string key, Reader reader, JsonLayout layout = JsonLayout::compact)
      : StoredValue(defaults, std::move(key)), reader_(std::move(reader)), layout_(layout) {}

  struct Loaded {
    std::optional<std::vector<T>> records;  ///< absent: there is no value, or it does not decode
    std::string problem;                    ///< why it does not decode; empty when there is no value
  };

  /// A value that does not decode is set aside.
  Loaded load() {
    const auto value = defaults_.value(key());
    if (!value) {
      return {};
    }
    try {
      const Data* data = std::get_if<Data>(&*value);
      if (data == nullptr) {
        throw DecodingError({}, "is no data");
      }
      return {decodeArray<T>(parseJson(data->bytes), reader_), {}};
    } catch (const DecodingError& error) {
      setAside(error.what());
      return {std::nullopt, error.what()};
    }
  }

  /// False when the list could not be stored; the old one then stands.
  bool store(const std::vector<T>& records) { return replace(Data{encodeRecords(records, layout_)}); }

 private:
  Reader reader_;
  JsonLayout layout_;
};

}  // namespace quillmark
