#pragma once

#include <optional>
#include <string>

#include "base/Lifetime.h"
#include "shell/VersionInquiry.h"

namespace quillmark {

/// Asks the hosted service for the newest version on the user's request, and offers the download page. The last result
/// is kept across restarts. Main thread only.
class AppUpdateService {
 public:
  AppUpdateService(VersionInquiry& inquiry, AlertHandler& alerts, UserDefaults& defaults);

  Setting<bool> updateAvailable;
  Setting<std::optional<std::string>> updateUrl;
  Setting<std::optional<std::string>> newVersion;

  /// Returns at once. Unless `silent`, an alert tells the user the outcome.
  void checkForUpdate(bool silent);

 private:
  void offerUpdate();

  VersionInquiry& inquiry_;
  AlertHandler& alerts_;
  Lifetime lifetime_;
};

}  // namespace quillmark
