#include "platform/desktop/NoWindowSystem.h"

#include <QGuiApplication>
#include <QScreen>

#include "base/Localization.h"
#include "base/Log.h"
#include "platform/desktop/Browser.h"

namespace quillmark {

namespace {

class NoPasteboard : public Pasteboard {
 public:
  void clearContents() override {}
  void setString(std::string) override { log("Pasteboard: this session has none"); }
  void readString(Reader reader) override { reader(std::nullopt); }
};

class NoKeyInjector : public KeyInjector {
 public:
  std::optional<KeyboardEvent> createKeyboardEvent(KeyCode, bool) override { return std::nullopt; }
  void post(std::span<const KeyboardEvent>) override {}
};

/// Never emits a refusal, which would show an alert per hot key, with advice that does not help here.
class NoHotKeys : public HotKeys {
 public:
  void registerHotKey(const std::string& name, const KeyCombination&) override {
    log("Hot key " + name + ": this session has none");
  }
  void unregisterHotKey(const std::string&) override {}
  bool isAvailable(const KeyCombination&) override { return false; }
  std::string keyLabel(int carbonKeyCode) const override { return std::to_string(carbonKeyCode); }
  std::optional<int> keyCodeOf(std::uint32_t) const override { return std::nullopt; }
};

class NoWorkspace : public Workspace {
 public:
  Application frontmostApplication() const override { return nullptr; }
  void openUrl(const std::string& url) override { openInBrowser(url); }
};

class ToolkitScreens : public Screens {
 public:
  std::vector<Screen> screens() const override {
    std::vector<Screen> all;
    for (const QScreen* screen : QGuiApplication::screens()) {
      const auto points = [scale = screen->devicePixelRatio(),
                           corner = screen->geometry().topLeft()](const QRect& area) {
        // The toolkit gives the corner of a screen in pixels.
        const QPointF origin = QPointF(corner) / scale + QPointF(area.topLeft() - corner);
        return Rect{{origin.x(), origin.y()}, {double(area.width()), double(area.height())}};
      };
      all.push_back({points(screen->geometry()), points(screen->availableGeometry())});
    }
    return all;
  }
  std::optional<Point> mouseLocation() const override { return std::nullopt; }
};

class NoPermissions : public Permissions {
 public:
  Permission keyInjection() const override { return Permission::unavailable; }
};

}  // namespace

struct NoWindowSystem::Adapters {
  NoPasteboard pasteboard;
  NoKeyInjector keyInjector;
  NoHotKeys hotKeys;
  NoWorkspace workspace;
  ToolkitScreens screens;
  NoPermissions permissions;
  WindowHints windowHints;
};

NoWindowSystem::NoWindowSystem() : adapters_(std::make_unique<Adapters>()) {}
NoWindowSystem::~NoWindowSystem() = default;

Pasteboard& NoWindowSystem::pasteboard() { return adapters_->pasteboard; }
KeyInjector& NoWindowSystem::keyInjector() { return adapters_->keyInjector; }
HotKeys& NoWindowSystem::hotKeys() { return adapters_->hotKeys; }
Workspace& NoWindowSystem::workspace() { return adapters_->workspace; }
Screens& NoWindowSystem::screens() { return adapters_->screens; }
Permissions& NoWindowSystem::permissions() { return adapters_->permissions; }
WindowHints& NoWindowSystem::windowHints() { return adapters_->windowHints; }

std::optional<std::string> NoWindowSystem::problem() const {
  return tr(
      "Quillmark can't reach other applications in this session: it sees neither their selection nor its own keyboard "
      "shortcuts. Please log in to a session that runs on X11.");
}

}  // namespace quillmark
