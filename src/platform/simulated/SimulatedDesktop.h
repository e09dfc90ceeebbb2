#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "platform/PanelWindow.h"
#include "platform/Platform.h"
#include "platform/simulated/SimulatedBackgroundQueue.h"
#include "platform/simulated/SimulatedDefaults.h"
#include "platform/simulated/SimulatedHttpSession.h"
#include "platform/simulated/SimulatedQueue.h"

namespace quillmark {

class SimulatedDesktop;

/// An application with one editable text. It takes copy and paste keys while it is in front.
class SimulatedApplication : public RunningApplication, public std::enable_shared_from_this<SimulatedApplication> {
 public:
  SimulatedApplication(SimulatedDesktop& desktop, std::optional<std::string> bundleId, std::string name)
      : desktop_(desktop), bundleId_(std::move(bundleId)), name_(std::move(name)) {}

  std::optional<std::string> bundleIdentifier() const override { return bundleId_; }
  std::optional<std::string> localizedName() const override { return name_; }
  void activate() override;

  void copy();
  void paste();
  void selectAll() { selection = {0, text.size()}; }
  std::string selectedText() const { return text.substr(selection.start, selection.length); }

  struct Range {
    std::size_t start = 0;
    std::size_t length = 0;
  };

  std::string text;
  Range selection;
  Duration latency = std::chrono::milliseconds(5);  ///< from a key to its effect
  bool hasQuit = false;
  bool copiesPicture = false;  ///< what is selected has no text form
  bool neverAnswers = false;   ///< it takes the pasteboard and then hangs

 private:
  SimulatedDesktop& desktop_;
  std::optional<std::string> bundleId_;
  std::string name_;
};

class SimulatedPasteboard : public Pasteboard {
 public:
  /// After this time an owner that does not answer counts as having no text.
  static constexpr Duration readDeadline = std::chrono::seconds(2);

  explicit SimulatedPasteboard(MainQueue& queue) : queue_(queue) {}

  void clearContents() override { put("Quillmark", std::nullopt); }
  void setString(std::string newText) override { put("Quillmark", std::move(newText)); }
  void readString(Reader reader) override;

  void put(std::string newOwner, std::optional<std::string> newText) {
    owner = std::move(newOwner);
    text = std::move(newText);
    ownerHangs = false;
  }

  std::string owner;
  std::optional<std::string> text;
  bool ownerHangs = false;

 private:
  MainQueue& queue_;
};

class SimulatedKeyInjector : public KeyInjector {
 public:
  explicit SimulatedKeyInjector(SimulatedDesktop& desktop) : desktop_(desktop) {}
  std::optional<KeyboardEvent> createKeyboardEvent(KeyCode keyCode, bool keyDown) override;
  void post(std::span<const KeyboardEvent> events) override;

  std::vector<KeyboardEvent> posted;
  std::function<bool(KeyCode, bool)> refuses;  ///< events that the system can't make

 private:
  SimulatedDesktop& desktop_;
};

class SimulatedHotKeys : public HotKeys {
 public:
  void registerHotKey(const std::string& name, const KeyCombination& combination) override {
    if (taken.contains(combination.carbonKeyCode)) {
      refused.emit(name);
    } else {
      registered[name] = combination;
    }
  }
  void unregisterHotKey(const std::string& name) override { registered.erase(name); }
  bool isAvailable(const KeyCombination& combination) override { return !taken.contains(combination.carbonKeyCode); }
  std::string keyLabel(int carbonKeyCode) const override {
    const auto label = labels.find(carbonKeyCode);
    return label == labels.end() ? "key " + std::to_string(carbonKeyCode) : label->second;
  }
  std::optional<int> keyCodeOf(std::uint32_t nativeScanCode) const override { return static_cast<int>(nativeScanCode); }
  /// The user presses and releases a combination.
  void press(const KeyCombination& combination);

  std::map<std::string, KeyCombination> registered;
  std::map<int, std::string> labels;
  std::set<int> taken;  ///< key codes that another program has grabbed, with any modifiers
};

class SimulatedWorkspace : public Workspace {
 public:
  Application frontmostApplication() const override { return front; }
  void openUrl(const std::string& url) override { openedUrls.push_back(url); }
  void bringToFront(const std::shared_ptr<SimulatedApplication>& application);

  std::shared_ptr<SimulatedApplication> front;
  std::vector<std::string> openedUrls;
};

class SimulatedScreens : public Screens {
 public:
  std::vector<Screen> screens() const override { return all; }
  std::optional<Point> mouseLocation() const override { return mouse; }

  std::vector<Screen> all{{{{0, 0}, {1920, 1080}}, {{0, 30}, {1920, 1050}}}};
  std::optional<Point> mouse = Point{400, 300};
};

/// A panel's window. It always gets the position it asks for.
class SimulatedWindow : public PanelWindow {
 public:
  void moveTopLeft(Point corner) override { at = corner; }
  void orderFront() override { visible = true; }
  void makeKeyAndOrderFront() override { visible = hasKeyboard = true; }
  void close() override { visible = hasKeyboard = false; }
  Size contentSize() const override { return size; }
  void setContentSize(Size newSize) override { size = newSize; }

  /// The user clicks into another window.
  void loseKeyboard() {
    hasKeyboard = false;
    resignedMain.emit();
  }

  Point at;
  Size size{400, 300};
  bool visible = false;
  bool hasKeyboard = false;
};

/// Alerts stay open until the test closes them.
class SimulatedAlerts : public Alerts {
 public:
  explicit SimulatedAlerts(SimulatedDesktop& desktop) : desktop_(desktop) {}
  void present(const Alert& alert, Closed closed) override;
  /// The user closes the alert in front.
  void close(std::size_t button = 0);

  std::vector<Alert> open;
  std::vector<Alert> shown;  ///< all that ever were, in order

 private:
  SimulatedDesktop& desktop_;
  std::vector<Closed> closed_;
};

class SimulatedPermissions : public Permissions {
 public:
  Permission keyInjection() const override { return permission; }
  Permission permission = Permission::granted;
};

class SimulatedLoginItem : public LoginItem {
 public:
  bool isEnabled() const override { return enabled; }
  Expected<void, std::string> registerItem() override { return call("register", true); }
  Expected<void, std::string> unregisterItem() override { return call("unregister", false); }

  bool enabled = false;
  bool fails = false;
  std::vector<std::string> calls;

 private:
  Expected<void, std::string> call(const char* name, bool newState) {
    calls.emplace_back(name);
    if (fails) {
      return unexpected(std::string("no such directory"));
    }
    enabled = newState;
    return {};
  }
};

class SimulatedLocale : public LocaleInfo {
 public:
  std::vector<std::string> preferredLanguages() const override { return languages; }
  std::vector<std::string> availableIdentifiers() const override { return {"en", "de", "de_DE", "fr"}; }
  std::string canonicalIdentifier(std::string_view identifier) const override { return std::string(identifier); }
  std::optional<std::string> displayName(std::string_view identifier, std::string_view inLocale) const override;
  std::optional<std::string> displayName(std::string_view identifier) const override {
    return displayName(identifier, "en");
  }
  int compareLocalized(std::string_view a, std::string_view b) const override { return a.compare(b); }

  std::vector<std::string> languages{"en-GB", "de-DE"};
  /// Identifier and locale to name.
  std::map<std::pair<std::string, std::string>, std::string> names{
      {{"de_DE", "de_DE"}, "Deutsch (Deutschland)"}, {{"de", "en"}, "German"}, {{"en", "en"}, "English"}};
};

/// A whole desktop in memory, with a clock that only tests move.
class SimulatedDesktop {
 public:
  static constexpr const char* ownBundleId = "org.quillmark.Quillmark";

  SimulatedDesktop();

  Platform platform();

  /// Opens an application with this text, all of it selected, and brings it to the front.
  std::shared_ptr<SimulatedApplication> openEditor(const std::string& name, const std::string& text);
  /// Brings an ordinary window of this program to the front.
  void activateOwnWindow();
  void advance(Duration by) { queue.advance(by); }

  OperatingSystem operatingSystem{"Linux", 6, 1, 0};
  SimulatedQueue queue;
  SimulatedBackgroundQueue background;
  SimulatedDefaults defaults;
  SimulatedLocale locale;
  SimulatedHttpSession http;
  SimulatedPasteboard pasteboard;
  SimulatedKeyInjector keyInjector;
  SimulatedHotKeys hotKeys;
  SimulatedWorkspace workspace;
  SimulatedScreens screens;
  SimulatedAlerts alerts;
  SimulatedPermissions permissions;
  SimulatedLoginItem loginItem;
  SimulatedWindow loadingWindow;
  SimulatedWindow reviewWindow;
  SimulatedWindow menuWindow;

 private:
  std::shared_ptr<SimulatedApplication> own_;
};

}  // namespace quillmark
