#include "platform/desktop/x11/X11WindowSystem.h"

#include <QGuiApplication>

#include "platform/desktop/SocketWatch.h"
#include "platform/desktop/x11/X11Connection.h"
#include "platform/desktop/x11/X11HotKeys.h"
#include "platform/desktop/x11/X11KeyInjector.h"
#include "platform/desktop/x11/X11Keyboard.h"
#include "platform/desktop/x11/X11Pasteboard.h"
#include "platform/desktop/x11/X11Permissions.h"
#include "platform/desktop/x11/X11Screens.h"
#include "platform/desktop/x11/X11WindowHints.h"
#include "platform/desktop/x11/X11Workspace.h"

namespace quillmark {

namespace {

class X11WindowSystem : public WindowSystem {
 public:
  X11WindowSystem(std::unique_ptr<X11Connection> connection, MainQueue& queue, const std::string& ownIdentifier)
      : connection_(std::move(connection)),
        keyboard_(*connection_, queue),
        pasteboard_(*connection_, queue),
        workspace_(*connection_, queue, ownIdentifier),
        keyInjector_(*connection_, keyboard_, workspace_),
        hotKeys_(*connection_, keyboard_),
        screens_(*connection_, qApp->devicePixelRatio()),
        permissions_(*connection_, keyboard_),
        windowHints_(makeX11WindowHints(*connection_)),
        activeWindows_(
            workspace_.activeWindow.connect([this](xcb_window_t window) { windowHints_->activeWindow.emit(window); })),
        events_(
            connection_->descriptor(), [this] { connection_->drain(); }, SocketWatch::When::readableAndBeforeSleep) {}

  Pasteboard& pasteboard() override { return pasteboard_; }
  KeyInjector& keyInjector() override { return keyInjector_; }
  HotKeys& hotKeys() override { return hotKeys_; }
  Workspace& workspace() override { return workspace_; }
  Screens& screens() override { return screens_; }
  Permissions& permissions() override { return permissions_; }
  WindowHints& windowHints() override { return *windowHints_; }

 private:
  std::unique_ptr<X11Connection> connection_;
  X11Keyboard keyboard_;
  X11Pasteboard pasteboard_;
  X11Workspace workspace_;
  X11KeyInjector keyInjector_;
  X11HotKeys hotKeys_;
  X11Screens screens_;
  X11Permissions permissions_;
  std::unique_ptr<WindowHints> windowHints_;
  Connection activeWindows_;
  SocketWatch events_;
};

}  // namespace

std::unique_ptr<WindowSystem> openX11WindowSystem(MainQueue& queue, const std::string& ownIdentifier) {
  auto connection = std::make_unique<X11Connection>();
  if (!connection->alive()) {
    return nullptr;
  }
  return std::make_unique<X11WindowSystem>(std::move(connection), queue, ownIdentifier);
}

}  // namespace quillmark
