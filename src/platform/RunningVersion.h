#pragma once

#include <string>

#include "platform/Bundle.h"
#include "platform/UserDefaults.h"

namespace quillmark {

/// The running version, as stored for stores and requests to read; empty when it is not known.
class RunningVersion : public Setting<std::string> {
 public:
  explicit RunningVersion(UserDefaults& defaults) : Setting(defaults, keys::appVersion) {}

  /// To be called before any store loads.
  void store(const Bundle& bundle) {
    const std::string version = bundle.shortVersion.value_or("");
    if (get() != version) {
      set(version);
    }
  }
};

}  // namespace quillmark
