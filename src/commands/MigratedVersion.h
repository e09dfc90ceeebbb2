#pragma once

#include <string>

#include "platform/UserDefaults.h"

namespace quillmark {

/// The version to which the stored commands have been migrated; empty for a store older than this key.
class MigratedVersion : public Setting<std::string> {
 public:
  explicit MigratedVersion(UserDefaults& defaults) : Setting(defaults, keys::lastMigratedVersion) {}
};

}  // namespace quillmark
