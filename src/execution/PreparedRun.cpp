#include "execution/PreparedRun.h"

#include <utility>

#include "commands/PromptGenerator.h"

namespace quillmark {

void PreparedRun::ask(const std::string& text, MainQueue& queue, AIProvider::ChatCompletion onComplete,
                      std::function<void(const std::string&)> onChunk) const {
  auto finish = onMainQueue(queue, std::move(onComplete));
  if (onChunk) {
    provider->streamChat(text, prompt, model, onMainQueue(queue, std::move(onChunk)), std::move(finish));
  } else {
    provider->chat(text, prompt, model, std::move(finish));
  }
}

Expected<PreparedRun, RunRefusal> prepareRun(const Command& command, const RunSources& sources) {
  return prepareRun(command, sources.providerStore.config(command.provider), sources);
}

Expected<PreparedRun, RunRefusal> prepareRun(const Command& command, const std::optional<ProviderConfig>& config,
                                             const RunSources& sources) {
  using enum RunRefusal::Reason;
  if (!config) {
    return unexpected(RunRefusal{providerNotFound});
  }
  if (!config->enabled) {
    return unexpected(RunRefusal{providerDisabled, config->name});
  }
  return PreparedRun{promptFor(command, sources.variablesStore.allVariables()), command.model,
                     sources.providerFactory.makeProvider(*config)};
}

}  // namespace quillmark
