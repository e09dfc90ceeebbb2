#pragma once

#include "platform/Permissions.h"
#include "platform/desktop/x11/X11Keyboard.h"

namespace quillmark {

/// X servers don't ask the user: keys can be simulated wherever the server supports it.
class X11Permissions : public Permissions {
 public:
  X11Permissions(const X11Connection& connection, const X11Keyboard& keyboard)
      : connection_(connection), keyboard_(keyboard) {}

  Permission keyInjection() const override {
    return connection_.alive() && keyboard_.canSimulate() ? Permission::granted : Permission::unavailable;
  }

 private:
  const X11Connection& connection_;
  const X11Keyboard& keyboard_;
};

}  // namespace quillmark
