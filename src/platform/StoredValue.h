#pragma once

#include <string>

#include "platform/UserDefaults.h"

namespace quillmark {

/// A key whose value may be unusable by this version; such a value is copied to a key of its own before it is replaced.
class StoredValue {
 public:
  StoredValue(UserDefaults& defaults, std::string key) : defaults_(defaults), key_(std::move(key)) {}

  const std::string& key() const { return key_; }

  /// Copies the current value to `<key>.undecodable-N`, once. A log line names that key. False when the copy could not
  /// be stored: the value must not be overwritten then.
  [[nodiscard]] bool setAside(const std::string& problem);

 private:
  UserDefaults& defaults_;
  std::string key_;
};

}  // namespace quillmark
