#pragma once

#include <string>

#include "platform/UserDefaults.h"

namespace quillmark {

/// The version up to which the stored commands are brought up to date; empty for a store that is older than that.
class MigratedVersion : public Setting<std::string> {
 public:
  explicit MigratedVersion(UserDefaults& defaults) : Setting(defaults, keys::lastMigratedVersion) {}
};

}  // namespace quillmark
