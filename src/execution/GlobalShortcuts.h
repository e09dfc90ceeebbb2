#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "base/Signal.h"
#include "platform/HotKeys.h"
#include "platform/UserDefaults.h"

namespace quillmark {

/// Named global shortcuts. A name has the key combination stored for it, or none; there are no defaults. Actions run
/// when the combination is released. Main thread only.
class GlobalShortcuts {
 public:
  GlobalShortcuts(UserDefaults& defaults, HotKeys& hotKeys);
  ~GlobalShortcuts() { removeAllHandlers(); }
  GlobalShortcuts(const GlobalShortcuts&) = delete;
  GlobalShortcuts& operator=(const GlobalShortcuts&) = delete;

  static std::string defaultsKey(const std::string& name) { return keys::keyboardShortcuts.name + name; }

  /// While a Pause is alive no combination is registered: the keys reach the window in front.
  class Pause {
   public:
    explicit Pause(GlobalShortcuts& shortcuts) : shortcuts_(shortcuts) { shortcuts_.pause(); }
    Pause(const Pause&) = delete;
    Pause& operator=(const Pause&) = delete;
    ~Pause() { shortcuts_.resume(); }

   private:
    GlobalShortcuts& shortcuts_;
  };

  /// Nothing when none is stored or the stored text does not decode.
  std::optional<KeyCombination> getShortcut(const std::string& name) const;

  /// Stores the combination of a name, or removes it. Takes effect for the name's handlers at once.
  void setShortcut(const std::string& name, const std::optional<KeyCombination>& combination);
  /// A name with handlers that has this combination.
  std::optional<std::string> nameUsing(const KeyCombination& combination) const;

  /// The stored combination of this name has changed, whoever stored it.
  Signal<const std::string&> shortcutByNameDidChange;

  /// Adds an action to the handlers of the name. A stored combination takes effect at once, a changed one as soon as
  /// it is stored.
  void onKeyUp(const std::string& name, std::function<void()> action);
  void removeAllHandlers();

 private:
  void updateRegistration(const std::string& name);
  void unregisterAll();
  void pause();
  void resume();

  UserDefaults& defaults_;
  HotKeys& hotKeys_;
  std::map<std::string, std::vector<std::function<void()>>> handlers_;
  std::map<std::string, KeyCombination> registered_;
  int pauses_ = 0;
  Connection releases_;
  Connection changes_;
};

}  // namespace quillmark
