#include "execution/GlobalShortcuts.h"

#include "base/Json.h"
#include "base/Trace.h"

namespace quillmark {

GlobalShortcuts::GlobalShortcuts(UserDefaults& defaults, HotKeys& hotKeys) : defaults_(defaults), hotKeys_(hotKeys) {
  releases_ = hotKeys_.released.connect([this](const std::string& name) {
    trace::mark("hot key released");
    if (const auto found = handlers_.find(name); found != handlers_.end()) {
      // A copy: a handler may renew all handlers.
      for (const auto actions = found->second; const auto& action : actions) {
        action();
      }
    }
  });
  changes_ = defaults_.changed.connect([this](const std::string& key) {
    const std::string prefix = defaultsKey("");
    if (key.starts_with(prefix) && handlers_.contains(key.substr(prefix.size()))) {
      follow(key.substr(prefix.size()));
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

void GlobalShortcuts::onKeyUp(const std::string& name, std::function<void()> action) {
  handlers_[name].push_back(std::move(action));
  follow(name);
}

void GlobalShortcuts::removeAllHandlers() {
  handlers_.clear();
  for (const auto& [name, combination] : registered_) {
    hotKeys_.unregisterHotKey(name);
  }
  registered_.clear();
}

/// Makes the registered combination of a name the stored one.
void GlobalShortcuts::follow(const std::string& name) {
  const auto wanted = getShortcut(name);
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
