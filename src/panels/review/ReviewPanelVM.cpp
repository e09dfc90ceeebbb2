#include "panels/review/ReviewPanelVM.h"

#include <algorithm>

#include "base/Localization.h"
#include "base/Log.h"
#include "base/Text.h"
#include "base/Trace.h"
#include "execution/PreparedRun.h"

namespace quillmark {
namespace {

/// The maker or host of a model, as model lists prefix it to the name.
constexpr const char* modelOrigins[] = {"OpenAI:",  "Anthropic:", "Google:",    "Meta:",      "DeepSeek:",
                                        "Arce AI:", "Cohere:",    "Mistral:",   "Microsoft:", "meta-llama/",
                                        "google/",  "anthropic/", "microsoft/", "x-ai/"};

std::string withoutOrigins(std::string name) {
  for (const char* origin : modelOrigins) {
    name = text::replacingAll(std::move(name), origin, "");
  }
  return std::string(text::trimmed(name));
}

}  // namespace

ReviewPanelVM::ReviewPanelVM(const Collaborators& collaborators)
    : collaborators_(collaborators), panel_(collaborators_.window, collaborators_.screens, false) {
  const auto changed = [this](const auto&) { menusChanged.emit(); };
  connections_ += collaborators_.providerStore.configs.observe(changed);
  connections_ += selectedProvider_.observe(changed);
  connections_ += selectedModel_.observe(changed);
  connections_ += availableModels_.observe(changed);
  connections_ += collaborators_.window.closedBySystem.connect([this] { discard(); });
}

void ReviewPanelVM::setCommand(const std::optional<Command>& command) {
  currentCommand_ = command;
  if (const auto config = collaborators_.providerStore.config(command ? command->provider : std::nullopt)) {
    const auto provider = collaborators_.providerFactory.makeProvider(*config);
    selectedProvider_.set(provider->id());
    selectedModel_.set(command && command->model ? command->model : provider->defaultModel());
    log("provider found and selected " + provider->name());
  } else {
    log("!!! no provider found");
  }
  updateAvailableModels();
}

void ReviewPanelVM::open(const std::string& newText, const std::string& newInitialText) {
  text_.set(newText);
  if (initialText_.get() != newInitialText) {
    initialText_.set(newInitialText);
  }
  hasError_.set(false);
  errorMessage_.set("");
  panel_.setContentSize(startSize);
  panel_.windowPosition = collaborators_.settings.reviewWindowPosition.get();
  panel_.present();
  trace::mark(trace::reviewPanelShown);
}

void ReviewPanelVM::execute(const Command& command, const std::string& textToSend) {
  ++run_;
  loading_.set(true);
  isStreaming_.set(false);  // the previous request may have streamed
  currentCommand_ = command;
  text_.set("");
  hasError_.set(false);
  errorMessage_.set("");

  const auto prepared = prepareRun(
      command, {collaborators_.variablesStore, collaborators_.providerStore, collaborators_.providerFactory});
  if (!prepared) {
    refuse(command, prepared.error());
    return;
  }
  collaborators_.promptStore.incrementUsage(command.id);
  collaborators_.statistics.recordCommand(command.name);

  const Run run{run_, prepared->provider->usesStreaming(), prepared->provider->name()};
  std::function<void(const std::string&)> onChunk;
  if (run.streams) {
    isStreaming_.set(true);
    onChunk = lifetime_.guard([this, number = run.number](const std::string& piece) { addChunk(number, piece); });
  }
  prepared->ask(textToSend, collaborators_.queue,
                lifetime_.guard([this, run](std::optional<std::string> answer) { finish(run, std::move(answer)); }),
                std::move(onChunk));
}

void ReviewPanelVM::refuse(const Command& command, const RunRefusal& refusal) {
  switch (refusal.reason) {
    case RunRefusal::Reason::providerNotFound:
      failLater(tr("Provider '{}' not found. Please check your provider settings.",
                   command.provider ? command.provider->toString() : tr("unknown")));
      log("Provider not found for command: " + command.name);
      break;
    case RunRefusal::Reason::providerDisabled:
      failLater(tr("Provider '{}' is disabled. Please enable it in the settings.", refusal.providerName));
      log("Provider disabled for command: " + command.name);
      break;
  }
}

/// Delayed, so that the user sees that something was in progress.
void ReviewPanelVM::failLater(std::string message) {
  collaborators_.queue.async(lifetime_.guard([this, number = run_, message = std::move(message)] {
    if (number == run_) {
      handleError(message);
    }
  }));
}

void ReviewPanelVM::addChunk(unsigned run, const std::string& chunk) {
  if (run != run_) {
    return;
  }
  if (hasError_.get()) {
    hasError_.set(false);
    errorMessage_.set("");
  }
  text_.append(chunk);
  trace::mark(trace::reviewChunk);
}

void ReviewPanelVM::finish(const Run& run, std::optional<std::string> answer) {
  collaborators_.statistics.recordProvider(run.providerName);
  if (answer) {
    log(run.streams ? "Command executed successfully (streaming): " + *answer : "Command executed successfully");
  } else {
    log(run.streams ? "Command execution failed (streaming)" : "Command execution failed");
  }
  if (run.number != run_) {
    return;
  }
  if (!answer) {
    handleError(tr("Failed to complete the request. The AI provider returned an empty response. Please try again."));
    return;
  }
  text_.set(std::move(*answer));
  loading_.set(false);
  if (run.streams) {
    isStreaming_.set(false);
  } else {
    hasError_.set(false);
    errorMessage_.set("");
  }
  trace::mark(trace::reviewAnswered);
}

void ReviewPanelVM::handleError(const std::string& message) {
  hasError_.set(true);
  errorMessage_.set(message);
  loading_.set(false);
  isStreaming_.set(false);
  trace::mark(trace::reviewFailed);
}

void ReviewPanelVM::reload() {
  if (!currentCommand_) {
    log("No current command to reload");
    handleError(tr("No command available to reload. Please check your command settings and try again."));
    return;
  }
  Command command = *currentCommand_;
  command.provider = selectedProvider_.get();
  command.model = selectedModel_.get();
  execute(command, initialText_.get());
}

void ReviewPanelVM::changeProvider(const std::optional<Uuid>& id) {
  selectedProvider_.set(id);
  auto config = collaborators_.providerStore.config(id);
  if (!config) {
    config = collaborators_.providerStore.defaultConfig();
  }
  selectedModel_.set(config ? std::optional(collaborators_.providerFactory.makeProvider(*config)->defaultModel())
                            : std::nullopt);
  updateAvailableModels();
}

void ReviewPanelVM::updateAvailableModels() {
  const auto config = collaborators_.providerStore.config(selectedProvider_.get());
  availableModels_.set(config ? collaborators_.modelStore.modelsFor(config->providerType)
                              : std::vector<ProviderModel>());
}

bool ReviewPanelVM::canApply(ActionBehavior behavior) const {
  const bool isThere = !loading_ || (behavior == ActionBehavior::copyToClipboard && !text_.empty());
  return isThere && !hasError_;
}

void ReviewPanelVM::apply(ActionBehavior behavior) {
  if (!canApply(behavior)) {
    return;
  }
  close();
  collaborators_.tracker.restoreFocus();
  collaborators_.capture.apply(behavior, text_.get(), initialText_.get());
}

void ReviewPanelVM::discard() {
  close();
  collaborators_.tracker.clearCommandTrigger();
}

void ReviewPanelVM::close() {
  log("Close panel");
  panel_.close();
}

std::string ReviewPanelVM::providerLabel() const {
  for (const auto& config : collaborators_.providerStore.configs.get()) {
    if (config.enabled && config.id == selectedProvider_.get()) {
      return config.name;
    }
  }
  return tr("Provider");
}

std::vector<ReviewPanelVM::ProviderItem> ReviewPanelVM::providerItems() const {
  std::vector<ProviderItem> items;
  for (const auto& config : collaborators_.providerStore.configs.get()) {
    if (config.enabled) {
      items.push_back({config.name, config.id});
    }
  }
  return items;
}

std::string ReviewPanelVM::modelLabel() const {
  const auto& selected = selectedModel_.get();
  if (!selected) {
    return tr("Model");
  }
  const auto& models = availableModels_.get();
  const auto found = std::ranges::find(models, *selected, &ProviderModel::identifier);
  return found == models.end() ? *selected : withoutOrigins(found->name);
}

std::vector<ReviewPanelVM::ModelItem> ReviewPanelVM::modelItems() const {
  const auto& models = availableModels_.get();
  if (models.empty()) {
    return {{tr("No models"), std::nullopt}};
  }
  std::vector<ModelItem> items;
  items.reserve(models.size() + 1);
  for (const auto& model : models) {
    items.push_back({model.name, model.identifier});
  }
  const auto& selected = selectedModel_.get();
  if (selected && std::ranges::find(models, *selected, &ProviderModel::identifier) == models.end()) {
    items.push_back({*selected, selected});
  }
  return items;
}

}  // namespace quillmark
