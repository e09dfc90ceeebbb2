#include "shell/LaunchAtLogin.h"

#include "base/Log.h"

namespace quillmark {

void LaunchAtLogin::setEnabled(bool enabled) {
  willChange.emit();
  if (enabled && item_.isEnabled()) {
    // Registered again, in case the entry is out of date.
    (void)item_.unregisterItem();
  }
  const auto result = enabled ? item_.registerItem() : item_.unregisterItem();
  if (!result) {
    log(std::string("Failed to ") + (enabled ? "enable" : "disable") + " launch at login: " + result.error());
  }
}

}  // namespace quillmark
