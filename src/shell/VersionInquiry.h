#pragma once

#include <functional>
#include <optional>
#include <string>

#include "platform/AlertHandler.h"
#include "platform/RunningVersion.h"
#include "platform/Workspace.h"
#include "providers/APIClient.h"

namespace quillmark {

/// The newest version, as reported by the hosted service.
struct AppVersion {
  std::string version;
  std::string updateUrl;  ///< where to get it
};

AppVersion appVersionFromJson(const Json& json);

/// What all checks for a new version share: the request, and the alerts. Main thread only.
class VersionInquiry {
 public:
  VersionInquiry(const APIClient& client, const AppConfig& config, AlertHandler& alerts, Workspace& workspace,
                 UserDefaults& defaults)
      : appVersion(defaults), client_(client), config_(config), alerts_(alerts), workspace_(workspace) {}

  RunningVersion appVersion;

  void ask(std::function<void(Expected<AppVersion, TransportError>)> completion) const;
  /// Whether this version is newer than the running one.
  bool isNewer(const std::string& version) const;

  void showUpToDate();
  void showFailure(const TransportError& error);
  /// Opens this page in the browser, or the service's own download page if it is not a web address.
  void openDownload(const std::optional<std::string>& updateUrl);

 private:
  const APIClient& client_;
  const AppConfig& config_;
  AlertHandler& alerts_;
  Workspace& workspace_;
};

}  // namespace quillmark
