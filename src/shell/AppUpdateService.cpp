#include "shell/AppUpdateService.h"

#include "base/Localization.h"
#include "base/Log.h"

namespace quillmark {

AppUpdateService::AppUpdateService(VersionInquiry& inquiry, AlertHandler& alerts, UserDefaults& defaults)
    : updateAvailable(defaults, keys::updateAvailable),
      updateUrl(defaults, keys::updateUrl),
      newVersion(defaults, keys::newVersion),
      inquiry_(inquiry),
      alerts_(alerts) {}

void AppUpdateService::checkForUpdate(bool silent) {
  inquiry_.ask(lifetime_.guard([this, silent](const Expected<AppVersion, TransportError>& newest) {
    if (!newest) {
      log(newest.error().description);
      if (!silent) {
        inquiry_.showFailure(newest.error());
      }
      return;
    }
    updateUrl.set(newest->updateUrl);
    newVersion.set(newest->version);
    const bool isNewer = inquiry_.isNewer(newest->version);
    updateAvailable.set(isNewer);
    std::string line = "Current version: ";
    line += inquiry_.appVersion.get();
    line += ". New version: ";
    line += newest->version;
    log(line);
    if (silent) {
      return;
    }
    isNewer ? offerUpdate() : inquiry_.showUpToDate();
  }));
}

void AppUpdateService::offerUpdate() {
  alerts_.show(
      {AlertStyle::informational,
       tr("Update available"),
       tr("A new version of Quillmark {} is available. Do you want to update now?", newVersion.get().value_or("")),
       {tr("Update Now"), tr("Later")}},
      lifetime_.guard([this](std::size_t button) {
        if (button == 0 && updateAvailable.get()) {
          inquiry_.openDownload(updateUrl.get());
        }
      }));
}

}  // namespace quillmark
