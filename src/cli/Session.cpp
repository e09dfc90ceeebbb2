#include "cli/Session.h"

#include <cstdio>

#include "platform/posix/DataDirectory.h"
#include "platform/posix/SystemInfo.h"

namespace quillmark::cli {

void complain(const std::string& message) { std::fprintf(stderr, "quillmark: %s\n", message.c_str()); }

void StandardErrorAlerts::present(const Alert& alert, Closed closed) {
  complain(alert.title + (alert.message.empty() ? "" : ": " + alert.message));
  closed(alert.buttons.size() - 1);
}

Session::Session(HttpSession& http, const std::string& dataDirectory)
    : defaults(defaultsFile(quillmark::dataDirectory(dataDirectory))),
      locale(useInterfaceLanguage(defaults, bundle())),
      alertHandler(queue, alerts),
      appConfig(defaults, AppConfig::localPortOfEnvironment()),
      transport(http, queue, bundle(), operatingSystem(), locale),
      providerFactory({transport, http, queue, alertHandler, defaults, appConfig}),
      promptStore(defaults),
      variablesStore(defaults, locale),
      providerStore(defaults) {
  if (const auto& place = defaults.setAside()) {
    complain("the stored settings were damaged; they are kept in " + *place);
  }
  if (const auto& problem = defaults.problem()) {
    complain(*problem);
  }
  RunningVersion(defaults).store(bundle());
  promptStore.loadUnchanged();
  providerStore.load();
}

}  // namespace quillmark::cli
