#include "execution/GlobalShortcuts.h"

#include <algorithm>

#include "base/Json.h"
#include "base/Trace.h"

namespace quillmark {

GlobalShortcuts::GlobalShortcuts(UserDefaults& defaults, HotKeys& hotKeys) : defaults_(defaults), hotKeys_(hotKeys) {
  releases_ = hotKeys_.released.connect([this](const std::string& name) {
    trace::mark(trace::hotKeyReleased);
    if (const auto found = handlers_.find(name); found != handlers_.end()) {
      // A copy: a handler may replace all handlers.
      for (const auto actions = found->second; const auto& action : actions) {
        action();
      }
    }
  });
  changes_ = defaults_.changed.connect([this](const std::string& key) {
    const std::string prefix = defaultsKey("");
    if (key.starts_with(prefix)) {
      const std::string name = key.substr(prefix.size());
      if (handlers_.contains(name)) {
        updateRegistration(name);
      }
      shortcutByNameDidChange.emit(name);
    }
  });
}

std::optional<KeyCombination> GlobalShortcuts::getShortcut(const std::string& name) const {
  const auto stored = defaults_.get<std::string>(defaultsKey(name));
  if (!stored) {
    return std::nullopt;
  }
  try {
    const Json json = parseJson(*stored);
    const JsonObject object(json);
    return KeyCombination{static_cast<int>(object.required<std::int64_t>("carbonKeyCode")),
                          static_cast<int>(object.required<std::int64_t>("carbonModifiers"))};
  } catch (const DecodingError&) {
    return std::nullopt;
  }
}

void GlobalShortcuts::setShortcut(const std::string& name, const std::optional<KeyCombination>& combination) {
  if (combination) {
    defaults_.set(defaultsKey(name), toText({{"carbonKeyCode", combination->carbonKeyCode},
                                             {"carbonModifiers", combination->carbonModifiers}}));
  } else {
    defaults_.remove(defaultsKey(name));
  }
}

std::optional<std::string> GlobalShortcuts::nameUsing(const KeyCombination& combination) const {
  const auto found =
      std::ranges::find_if(handlers_, [&](const auto& entry) { return getShortcut(entry.first) == combination; });
  return found == handlers_.end() ? std::nullopt : std::optional(found->first);
}

void GlobalShortcuts::onKeyUp(const std::string& name, std::function<void()> action) {
  handlers_[name].push_back(std::move(action));
  updateRegistration(name);
}

void GlobalShortcuts::removeAllHandlers() {
  handlers_.clear();
  unregisterAll();
}

void GlobalShortcuts::unregisterAll() {
  for (const auto& [name, combination] : registered_) {
    hotKeys_.unregisterHotKey(name);
  }
  registered_.clear();
}

void GlobalShortcuts::pause() {
  if (++pauses_ == 1) {
    unregisterAll();
  }
}

void GlobalShortcuts::resume() {
  if (--pauses_ == 0) {
    for (const auto& [name, actions] : handlers_) {
      updateRegistration(name);
    }
  }
}

/// Registers the stored combination of a name in place of the registered one, or none.
void GlobalShortcuts::updateRegistration(const std::string& name) {
  const auto wanted = pauses_ == 0 ? getShortcut(name) : std::nullopt;
  const auto present = registered_.find(name);
  if (present != registered_.end()) {
    if (wanted == present->second) {
      return;
    }
    hotKeys_.unregisterHotKey(name);
    registered_.erase(present);
  }
  if (wanted) {
    registered_.emplace(name, *wanted);
    hotKeys_.registerHotKey(name, *wanted);
  }
}

}  // namespace quillmark
