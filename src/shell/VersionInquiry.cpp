#include "shell/VersionInquiry.h"

#include "base/Localization.h"
#include "base/Text.h"

namespace quillmark {
namespace {

constexpr const char* versionPath = "app/version";

/// The desktop would pass any other kind of address to whatever program handles it.
bool isPage(const std::string& url) {
  const auto lowered = text::lowerCased(url);
  return isValidUrl(url) && (lowered.starts_with("https://") || lowered.starts_with("http://"));
}

}  // namespace

AppVersion appVersionFromJson(const Json& json) {
  const JsonObject object(json);
  return {object.required<std::string>("version"), object.required<std::string>("updateUrl")};
}

void VersionInquiry::ask(std::function<void(Expected<AppVersion, TransportError>)> completion) const {
  client_.get<AppVersion>(versionPath, "AppVersion", appVersionFromJson, std::move(completion), appVersion.get());
}

bool VersionInquiry::isNewer(const std::string& version) const {
  return text::compareNumerically(appVersion.get(), version) < 0;
}

void VersionInquiry::showUpToDate() {
  alerts_.show(AlertKind::notice(tr("Quillmark Is Up-To-Date"),
                                 tr("You are on the latest version ({}) of Quillmark.", appVersion.get())));
}

void VersionInquiry::showFailure(const TransportError& error) {
  alerts_.show(AlertKind::unknownError(error.description));
}

void VersionInquiry::openDownload(const std::optional<std::string>& updateUrl) {
  const std::string url = updateUrl && isPage(*updateUrl) ? *updateUrl : config_.downloadLink();
  if (isPage(url)) {
    workspace_.openUrl(url);
  } else {
    alerts_.show(AlertKind::unknownError(tr("The download URL cannot be opened")));
  }
}

}  // namespace quillmark
