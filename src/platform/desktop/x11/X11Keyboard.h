#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "base/Lifetime.h"
#include "base/Signal.h"
#include "platform/MainQueue.h"
#include "platform/desktop/x11/X11Connection.h"
#include "platform/desktop/x11/chord/X11Chord.h"

struct xkb_context;

namespace quillmark {

/// The current keyboard map, kept up to date. Main thread only.
class X11Keyboard {
 public:
  X11Keyboard(X11Connection& connection, MainQueue& queue);
  ~X11Keyboard();

  /// Whether the server lets us simulate keys (the XTEST extension).
  bool canSimulate() const { return canSimulate_; }

  const chord::Keyboard& keys();

  /// Masks of core events and grabs. 0 where the keyboard has no such modifier.
  struct Modifiers {
    std::uint16_t alt = 0;
    std::uint16_t super = 0;
    std::uint16_t numLock = 0;
    friend bool operator==(const Modifiers&, const Modifiers&) = default;
  };
  Modifiers modifiers();
  /// The mask that a modifier key contributes to, 0 for other keys and for keys that lock.
  std::uint16_t maskOf(std::uint8_t key);
  /// The label of a key in the current group: its character as a capital, or a name such as "Page Up".
  std::string label(std::uint8_t key);

  /// The group and the pressed keys, in one round trip.
  chord::Moment moment();
  chord::XKeys pressedKeys();

  /// A new keyboard map has been read.
  Signal<> changed;

 private:
  void readIfStale();
  void read();

  X11Connection& connection_;
  MainQueue& queue_;
  xkb_context* context_ = nullptr;
  bool canSimulate_ = false;
  bool stale_ = true;
  chord::Keyboard keys_;
  Modifiers modifiers_;
  std::array<std::uint8_t, 256> masks_{};
  std::vector<std::array<std::uint32_t, 256>> symbols_;  ///< by group and key
  Connection mapEvents_;
  Lifetime lifetime_;
};

}  // namespace quillmark
