#pragma once

#include <functional>
#include <optional>
#include <string>

#include "platform/AlertHandler.h"
#include "platform/RunningVersion.h"
#include "platform/Workspace.h"
#include "providers/APIClient.h"

namespace quillmark {

/// What the hosted service says of the newest version.
struct AppVersion {
  std::string version;
  std::string updateUrl;  ///< where to get it
};

AppVersion appVersionFromJson(const Json& json);

/// What all ways of looking for a new version have in common: the question, and what the user is told. Main thread
/// only.
class VersionInquiry {
 public:
  VersionInquiry(const APIClient& client, const AppConfig& config, AlertHandler& alerts, Workspace& workspace,
                 UserDefaults& defaults)
      : appVersion(defaults), client_(client), config_(config), alerts_(alerts), workspace_(workspace) {}

  RunningVersion appVersion;

  void ask(std::function<void(Expected<AppVersion, TransportError>)> completion) const;
  /// Whether this version is above the running one.
  bool isNewer(const std::string& version) const;

  void showUpToDate();
  void showFailure(const TransportError& error);
  /// Opens this page of the web in the browser, or the service's own download page when it is none.
  void openDownload(const std::optional<std::string>& updateUrl);

 private:
  const APIClient& client_;
  const AppConfig& config_;
  AlertHandler& alerts_;
  Workspace& workspace_;
};

}  // namespace quillmark
