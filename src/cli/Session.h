#pragma once

#include <string>

#include "commands/CustomPromptStore.h"
#include "commands/VariablesStore.h"
#include "platform/AlertHandler.h"
#include "platform/HttpSession.h"
#include "platform/posix/IcuLocaleInfo.h"
#include "platform/posix/PosixMainQueue.h"
#include "platform/posix/SqliteUserDefaults.h"
#include "providers/ProviderFactory.h"
#include "providers/ProviderStore.h"

namespace quillmark::cli {

/// Alerts as lines on standard error.
class StandardErrorAlerts : public Alerts {
 public:
  void present(const Alert& alert, Closed closed) override;
};

/// Writes "quillmark: <message>" to standard error.
void complain(const std::string& message);

/// The services of the desktop program that need no desktop, over the same stored data.
struct Session {
  /// An empty directory means the user's. Loads the stores.
  Session(HttpSession& http, const std::string& dataDirectory);

  /// By name, slug or id; complains when there is none.
  std::optional<ProviderConfig> providerCalled(const std::string& name) const;

  PosixMainQueue queue;
  SqliteUserDefaults defaults;
  IcuLocaleInfo locale;
  StandardErrorAlerts alerts;
  AlertHandler alertHandler;
  AppConfig appConfig;
  HttpTransport transport;
  ProviderFactory providerFactory;
  CustomPromptStore promptStore;
  VariablesStore variablesStore;
  ProviderStore providerStore;
};

}  // namespace quillmark::cli
