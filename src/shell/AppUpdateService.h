#pragma once

#include <optional>
#include <string>

#include "base/Lifetime.h"
#include "shell/VersionInquiry.h"

namespace quillmark {

/// Asks the hosted service for the newest version when the user wants to know, and offers the page to get it from. What
/// it has learnt last is kept across restarts. Main thread only.
class AppUpdateService {
 public:
  AppUpdateService(VersionInquiry& inquiry, AlertHandler& alerts, UserDefaults& defaults);

  Setting<bool> updateAvailable;
  Setting<std::optional<std::string>> updateUrl;
  Setting<std::optional<std::string>> newVersion;

  /// Returns at once. Unless `silent`, the user is told what comes of it in an alert.
  void checkForUpdate(bool silent);

 private:
  void offerUpdate();

  VersionInquiry& inquiry_;
  AlertHandler& alerts_;
  Lifetime lifetime_;
};

}  // namespace quillmark
