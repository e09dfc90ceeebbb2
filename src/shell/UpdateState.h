#pragma once

#include <optional>
#include <string>

#include "platform/UserDefaults.h"

namespace quillmark {

/// What is known of a newer version, and whether it is looked for.
struct UpdateState {
  explicit UpdateState(UserDefaults& defaults)
      : updateAvailable(defaults, keys::updateAvailable),
        updateUrl(defaults, keys::updateUrl),
        newVersion(defaults, keys::newVersion),
        checkForUpdatesAutomatically(defaults, keys::automaticChecks) {}

  Setting<bool> updateAvailable;
  Setting<std::optional<std::string>> updateUrl;
  Setting<std::optional<std::string>> newVersion;
  Setting<bool> checkForUpdatesAutomatically;
};

}  // namespace quillmark
