#pragma once

#include <string>

#include "platform/MainQueue.h"
#include "platform/desktop/SocketWatch.h"
#include "platform/desktop/x11/X11Connection.h"
#include "platform/desktop/x11/X11HotKeys.h"
#include "platform/desktop/x11/X11KeyInjector.h"
#include "platform/desktop/x11/X11Keyboard.h"
#include "platform/desktop/x11/X11Pasteboard.h"
#include "platform/desktop/x11/X11Permissions.h"
#include "platform/desktop/x11/X11Screens.h"
#include "platform/desktop/x11/X11Workspace.h"

namespace quillmark {

/// Everything that the system needs of an X11 desktop, on one connection of its own beside the toolkit's, driven by the
/// toolkit's event loop.
class X11Desktop {
 public:
  /// `scale`: pixels of a logical point.
  X11Desktop(MainQueue& queue, const std::string& ownIdentifier, double scale)
      : keyboard(connection, queue),
        pasteboard(connection, queue),
        workspace(connection, queue, ownIdentifier),
        keyInjector(connection, keyboard, workspace),
        hotKeys(connection, keyboard),
        screens(connection, scale),
        permissions(connection, keyboard),
        events_(
            connection.descriptor(), [this] { connection.drain(); }, SocketWatch::When::readableAndBeforeSleep) {}

  X11Connection connection;
  X11Keyboard keyboard;
  X11Pasteboard pasteboard;
  X11Workspace workspace;
  X11KeyInjector keyInjector;
  X11HotKeys hotKeys;
  X11Screens screens;
  X11Permissions permissions;

 private:
  SocketWatch events_;
};

}  // namespace quillmark
