#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "base/Expected.h"
#include "commands/Command.h"
#include "commands/VariablesStore.h"
#include "platform/MainQueue.h"
#include "providers/ProviderFactory.h"
#include "providers/ProviderStore.h"

namespace quillmark {

/// Everything needed to send a command to its provider.
struct PreparedRun {
  std::string prompt;
  std::optional<std::string> model;  ///< absent: the provider's default
  std::unique_ptr<AIProvider> provider;

  /// Sends the text. With `onChunk` the answer is streamed. Both callbacks come through the queue, whichever thread the
  /// provider calls back on.
  void ask(const std::string& text, MainQueue& queue, AIProvider::ChatCompletion onComplete,
           std::function<void(const std::string&)> onChunk = nullptr) const;
};

/// Why a command can't run.
struct RunRefusal {
  enum class Reason { providerNotFound, providerDisabled };
  Reason reason;
  std::string providerName{};  ///< of the disabled provider
};

struct RunSources {
  const VariablesStore& variablesStore;
  const ProviderStore& providerStore;
  const ProviderFactory& providerFactory;
};

/// Fills the command's template and creates its provider. Counts, logs and shows nothing.
Expected<PreparedRun, RunRefusal> prepareRun(const Command& command, const RunSources& sources);
/// The same with this provider instead of the command's.
Expected<PreparedRun, RunRefusal> prepareRun(const Command& command, const std::optional<ProviderConfig>& config,
                                             const RunSources& sources);

}  // namespace quillmark
