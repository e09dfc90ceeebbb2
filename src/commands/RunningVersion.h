#pragma once

#include "platform/Bundle.h"
#include "platform/UserDefaults.h"

namespace quillmark {

/// Makes `appVersion` the running version. Stores and requests rely on it, so it comes before any store loads.
inline void storeRunningVersion(UserDefaults& defaults, const Bundle& bundle) {
  const std::string version = bundle.shortVersion.value_or("");
  if (defaults.get<std::string>("appVersion") != version) {
    defaults.set("appVersion", version);
  }
}

}  // namespace quillmark
