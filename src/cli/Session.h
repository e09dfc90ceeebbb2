#pragma once

#include <string>

#include "commands/CustomPromptStore.h"
#include "commands/VariablesStore.h"
#include "platform/AlertHandler.h"
#include "platform/posix/CurlHttpSession.h"
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

/// The stored data of a program without a desktop. Complains of a file that was damaged or can't be used, and of every
/// change that can't be stored; the program's exit status must then not be 0.
class StoredData {
 public:
  /// An empty directory means the user's.
  explicit StoredData(const std::string& dataDirectory);

  SqliteUserDefaults defaults;

 private:
  Connection refusals_;
};

/// The services of the desktop program that need no desktop, over the same stored data.
struct Session {
  /// When the HTTP library gets ready, which takes a few milliseconds of its own thread.
  enum class Http { withFirstRequest, whileStoresLoad };

  /// An empty directory means the user's. Loads the stores.
  explicit Session(const std::string& dataDirectory, Http readiness = Http::withFirstRequest);
  ~Session() { http.stop(); }

  /// Runs the main queue until finish(). No handler of a request runs any more when it returns: what they call may go.
  void run();
  /// Makes run() return once the blocks before have run, alerts included.
  void finish();

  /// By name, slug or id; complains when there is none.
  std::optional<ProviderConfig> providerCalled(const std::string& name) const;

  CurlHttpSession http;
  PosixMainQueue queue;
  StoredData data;
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
