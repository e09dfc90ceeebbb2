#include "platform/desktop/WindowSystem.h"

#include "platform/desktop/NoWindowSystem.h"
#include "platform/desktop/x11/X11WindowSystem.h"

namespace quillmark {

std::unique_ptr<WindowSystem> openWindowSystem(MainQueue& queue, const std::string& ownIdentifier) {
  if (auto x11 = openX11WindowSystem(queue, ownIdentifier)) {
    return x11;
  }
  return std::make_unique<NoWindowSystem>();
}

}  // namespace quillmark
