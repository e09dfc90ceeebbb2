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

/// The stored data of a program without a desktop. Reports a file that was damaged or can't be used, and every change
/// that can't be stored; the program's exit status must then not be 0.
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
  /// When the HTTP library is initialised, which takes its thread a few milliseconds.
  enum class Http { withFirstRequest, whileStoresLoad };

  /// An empty directory means the user's. Loads the stores.
  explicit Session(const std::string& dataDirectory, Http readiness = Http::withFirstRequest);
  ~Session() { http.stop(); }

  /// Runs the main queue until finish(). Once it returns, no request's handler runs any more: what they use may be
  /// destroyed.
  void run();
  /// Makes run() return once earlier blocks have run, alerts included.
  void finish();

  /// By name, slug or id; reports on standard error when there is none.
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
