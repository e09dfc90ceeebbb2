#pragma once

#include <cstdint>
#include <optional>
#include <span>

namespace quillmark {

/// Positions of keys on an ANSI keyboard, as virtual key codes.
enum class KeyCode : std::uint16_t { c = 0x08, v = 0x09, tab = 0x30, commandModifier = 0x38 };

/// The flag that makes an event part of a command combination, such as copy.
inline constexpr std::uint64_t commandFlag = 0x100000;

struct KeyboardEvent {
  KeyCode keyCode{};
  bool keyDown = false;
  std::uint64_t flags = 0;
  friend bool operator==(const KeyboardEvent&, const KeyboardEvent&) = default;
};

/// Simulates key presses that reach the application in front. Main thread only.
class KeyInjector {
 public:
  KeyInjector() = default;
  KeyInjector(const KeyInjector&) = delete;
  KeyInjector& operator=(const KeyInjector&) = delete;
  virtual ~KeyInjector() = default;

  /// Nothing when the system can't create the event.
  virtual std::optional<KeyboardEvent> createKeyboardEvent(KeyCode keyCode, bool keyDown) = 0;

  /// Posts the events in order, with no delay and nothing between them. The adapter knows which combination means copy
  /// and paste to the window in front, and that modifiers the user still holds must not count.
  virtual void post(std::span<const KeyboardEvent> events) = 0;
};

}  // namespace quillmark
