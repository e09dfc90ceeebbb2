#include "platform/desktop/Browser.h"

#include <QProcess>

#include "base/Localization.h"
#include "base/Log.h"

namespace quillmark {

void openInBrowser(const std::string& url) {
  QProcess opener;
  opener.setProgram(QStringLiteral("xdg-open"));
  opener.setArguments({QString::fromStdString(url)});
  // The language chosen for this program does not apply to the browser.
  auto environment = QProcessEnvironment::systemEnvironment();
  const auto language = localization::languageOfEnvironment();
  if (language) {
    environment.insert(QStringLiteral("LANGUAGE"), QString::fromStdString(*language));
  } else {
    environment.remove(QStringLiteral("LANGUAGE"));
  }
  opener.setProcessEnvironment(environment);
  if (!opener.startDetached()) {
    log("Can't open " + url + ": xdg-open is missing");
  }
}

}  // namespace quillmark
