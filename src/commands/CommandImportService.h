#pragma once

#include <functional>
#include <optional>
#include <set>
#include <string>

#include "base/Lifetime.h"
#include "base/Signal.h"
#include "commands/CommandTemplate.h"
#include "commands/CustomPromptStore.h"
#include "platform/AlertHandler.h"
#include "platform/LocaleInfo.h"
#include "platform/MainQueue.h"
#include "providers/AppConfig.h"
#include "providers/HttpTransport.h"
#include "providers/ProviderFactory.h"
#include "providers/ProviderStore.h"

namespace quillmark {

/// Adds a command of the hosted service's catalogue to the user's own. Main thread only.
class CommandImportService {
 public:
  struct Collaborators {
    MainQueue& queue;
    HttpTransport& transport;
    AppConfig& appConfig;
    AlertHandler& alerts;
    const LocaleInfo& locale;
    const Observable<std::string>& interfaceLanguage;  ///< identifier, such as "de"
    CustomPromptStore& promptStore;
    ProviderStore& providerStore;
    const ProviderFactory& providerFactory;
  };

  explicit CommandImportService(const Collaborators& collaborators) : collaborators_(collaborators) {}

  /// Fetches the template, has the default provider put its title into the interface language, and adds it; an alert
  /// reports the outcome. While a slug is being installed, installing it again does nothing.
  void install(const std::string& slug);

 private:
  using Title = std::optional<std::string>;

  /// Calls back with the title in the interface language; nothing when there is no usable provider or no answer.
  void translateTitle(const std::string& title, std::function<void(const Title&)> completion);
  void add(Command command, const Title& translated);

  Collaborators collaborators_;
  std::set<std::string> underWay_;  // slugs
  Lifetime lifetime_;
};

}  // namespace quillmark
