#pragma once

#include <functional>
#include <map>
#include <utility>

#include "platform/UserDefaults.h"

namespace quillmark {

/// A defaults database in memory.
class SimulatedDefaults : public UserDefaults {
 public:
  using Values = std::map<std::string, DefaultsValue, std::less<>>;

  std::optional<DefaultsValue> value(std::string_view key) const override {
    const auto found = values.find(key);
    return found == values.end() ? std::nullopt : std::optional(found->second);
  }
  std::uint64_t revision(std::string_view key) const override {
    const auto found = values.find(key);
    auto& [seen, number] = revisions_[std::string(key)];
    const auto present = found == values.end() ? std::nullopt : std::optional(found->second);
    if (seen != present) {
      seen = present;
      number = ++lastRevision_;
    }
    return present ? number : 0;
  }
  void synchronize() override {}

  /// Another process stores a value.
  void setElsewhere(const std::string& key, DefaultsValue value) {
    values.insert_or_assign(key, std::move(value));
    changed.emit(key);
  }

  Values values;  ///< what is stored; a test may put values in before a store reads them
  bool diskIsFull = false;
  int writes = 0;                   ///< writes and ends of transactions so far
  std::optional<int> failingWrite;  ///< the one of them, counted from 1, that fails

 protected:
  Expected<bool, std::string> write(const std::string& key, const std::optional<DefaultsValue>& value,
                                    Durability /*durability*/) override {
    if (!value && !values.contains(key)) {
      return false;
    }
    if (fails()) {
      return unexpected(std::string("the disk is full"));
    }
    if (value) {
      values.insert_or_assign(key, *value);
    } else {
      values.erase(key);
    }
    return true;
  }
  Expected<void, std::string> begin(Durability /*durability*/) override {
    before_ = values;
    return {};
  }
  Expected<void, std::string> commit(Durability /*durability*/) override {
    if (fails()) {
      return unexpected(std::string("the disk is full"));
    }
    return {};
  }
  void rollBack() override { values = std::exchange(before_, {}); }

 private:
  bool fails() { return ++writes == failingWrite || diskIsFull; }

  Values before_;
  mutable std::map<std::string, std::pair<std::optional<DefaultsValue>, std::uint64_t>> revisions_;
  mutable std::uint64_t lastRevision_ = 0;
};

}  // namespace quillmark
