#pragma once

#include "platform/KeyInjector.h"
#include "platform/desktop/x11/X11Keyboard.h"
#include "platform/desktop/x11/X11Workspace.h"

namespace quillmark {

/// Simulates keys by the XTEST extension. It must share the connection of the hot keys: a hot key that is still down
/// grabs the keyboard for its connection, and only that connection can release it.
class X11KeyInjector : public KeyInjector {
 public:
  X11KeyInjector(X11Connection& connection, X11Keyboard& keyboard, X11Workspace& workspace)
      : connection_(connection), keyboard_(keyboard), workspace_(workspace) {}

  std::optional<KeyboardEvent> createKeyboardEvent(KeyCode keyCode, bool keyDown) override;
  /// While an application is being activated, the keys wait for it.
  void post(std::span<const KeyboardEvent> events) override;

 private:
  void send(std::span<const KeyboardEvent> events);
  chord::Dialect dialectOfWindowInFront() const;

  X11Connection& connection_;
  X11Keyboard& keyboard_;
  X11Workspace& workspace_;
  Lifetime lifetime_;
};

}  // namespace quillmark
