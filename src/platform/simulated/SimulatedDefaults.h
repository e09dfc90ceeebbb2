#pragma once

#include <functional>
#include <map>

#include "platform/UserDefaults.h"

namespace quillmark {

/// A defaults database in memory. Two objects may share one map: a restart, or a second process.
class SimulatedDefaults : public UserDefaults {
 public:
  std::optional<DefaultsValue> value(std::string_view key) const override {
    const auto found = values.find(key);
    return found == values.end() ? std::nullopt : std::optional(found->second);
  }
  void remove(std::string_view key) override {
    if (const auto found = values.find(key); found != values.end()) {
      values.erase(found);
      changed.emit(std::string(key));
    }
  }
  void synchronize() override {}

  std::map<std::string, DefaultsValue, std::less<>> values;
  bool diskIsFull = false;

 protected:
  bool store(std::string_view key, DefaultsValue value, Durability /*durability*/) override {
    if (diskIsFull) {
      return false;
    }
    values.insert_or_assign(std::string(key), std::move(value));
    changed.emit(std::string(key));
    return true;
  }
};

}  // namespace quillmark
