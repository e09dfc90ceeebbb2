#pragma once

#include <concepts>
#include <functional>
#include <optional>

namespace quillmark {

/// Calls an action when a value differs from the one last checked. The first value counts as a change. Main thread
/// only.
template <std::equality_comparable Value>
class ChangeModifier {
 public:
  explicit ChangeModifier(std::function<void(const Value&)> action) : action_(std::move(action)) {}

  /// Checks the value; may be called at any rate.
  void update(const Value& value) {
    if (oldValue_ && *oldValue_ == value) {
      return;
    }
    oldValue_ = value;  // first, so that an action that causes another check does not run again
    action_(value);
  }

 private:
  std::function<void(const Value&)> action_;
  std::optional<Value> oldValue_;
};

}  // namespace quillmark
