#pragma once

#include "platform/KeyInjector.h"
#include "platform/desktop/x11/X11Keyboard.h"

namespace quillmark {

/// Simulates keys by the XTEST extension. Use the connection of the hot keys: a hot key that is still down holds the
/// keyboard for its connection, and only that connection can let go of it.
class X11KeyInjector : public KeyInjector {
 public:
  X11KeyInjector(X11Connection& connection, X11Keyboard& keyboard) : connection_(connection), keyboard_(keyboard) {}

  std::optional<KeyboardEvent> createKeyboardEvent(KeyCode keyCode, bool keyDown) override;
  void post(std::span<const KeyboardEvent> events) override;

 private:
  chord::Dialect dialectOfWindowInFront() const;

  X11Connection& connection_;
  X11Keyboard& keyboard_;
};

}  // namespace quillmark
