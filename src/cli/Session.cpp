#include "cli/Session.h"

#include <algorithm>
#include <cstdio>

#include "base/Text.h"
#include "platform/posix/DataDirectory.h"
#include "platform/posix/SystemInfo.h"

namespace quillmark::cli {

void complain(const std::string& message) { std::fprintf(stderr, "quillmark: %s\n", message.c_str()); }

void StandardErrorAlerts::present(const Alert& alert, Closed closed) {
  complain(alert.title + (alert.message.empty() ? "" : ": " + alert.message));
  closed(alert.buttons.size() - 1);
}

StoredData::StoredData(const std::string& dataDirectory)
    : defaults(defaultsFile(quillmark::dataDirectory(dataDirectory))) {
  if (const auto& place = defaults.setAside()) {
    complain("the stored settings were damaged; they are kept in " + *place);
  }
  if (const auto& problem = defaults.problem()) {
    complain(*problem);
  }
  refusals_ = defaults.refused.connect(
      [](const std::string& reason) { complain("the change could not be stored: " + reason); });
}

Session::Session(const std::string& dataDirectory, Http readiness)
    : data(dataDirectory),
      locale(useInterfaceLanguage(data.defaults, bundle())),
      alertHandler(queue, alerts),
      appConfig(data.defaults, AppConfig::localPortOfEnvironment()),
      transport(http, queue, bundle(), operatingSystem(), locale),
      providerFactory({transport, http, queue, alertHandler, data.defaults, appConfig}),
      promptStore(data.defaults),
      variablesStore(data.defaults, locale),
      providerStore(data.defaults) {
  if (readiness == Http::whileStoresLoad) {
    http.warmUp();  // after the language is chosen, which changes the environment that the library's thread reads
  }
  RunningVersion(data.defaults).store(bundle());
  promptStore.loadUnchanged();
  providerStore.load();
}

void Session::run() {
  queue.run();
  http.stop();
}

void Session::finish() {
  queue.async([this] { queue.stop(); });
}

std::optional<ProviderConfig> Session::providerCalled(const std::string& name) const {
  const std::string wanted = text::lowerCased(name);
  const auto& configs = providerStore.configs.get();
  const auto found = std::ranges::find_if(configs, [&](const ProviderConfig& config) {
    return text::lowerCased(config.name) == wanted || text::lowerCased(config.slug) == wanted ||
           config.id == Uuid::parse(name);
  });
  if (found == configs.end()) {
    complain("no provider is called " + name);
    return std::nullopt;
  }
  return *found;
}

}  // namespace quillmark::cli
