#pragma once

#include <string>

#include "platform/UserDefaults.h"

namespace quillmark {

/// One key whose value can be of no use to this version, and is then kept under a key of its own before it is replaced.
class StoredValue {
 public:
  StoredValue(UserDefaults& defaults, std::string key) : defaults_(defaults), key_(std::move(key)) {}

  const std::string& key() const { return key_; }

  /// Copies the present value to `<key>.undecodable-N`, once. A log line names that key. False when it could not be
  /// kept: then nothing may be written over it.
  [[nodiscard]] bool setAside(const std::string& problem);

 private:
  UserDefaults& defaults_;
  std::string key_;
};

}  // namespace quillmark
