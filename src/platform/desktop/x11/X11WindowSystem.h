#pragma once

#include <memory>
#include <string>

#include "platform/desktop/WindowSystem.h"

namespace quillmark {

/// The set for a session with an X server, on one connection of its own beside the toolkit's, driven by the toolkit's
/// event loop. Null without a server.
std::unique_ptr<WindowSystem> openX11WindowSystem(MainQueue& queue, const std::string& ownIdentifier);

}  // namespace quillmark
