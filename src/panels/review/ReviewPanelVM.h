#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/Lifetime.h"
#include "base/Signal.h"
#include "commands/CustomPromptStore.h"
#include "commands/VariablesStore.h"
#include "execution/ActiveApplicationTracker.h"
#include "execution/PreparedRun.h"
#include "execution/ReviewSession.h"
#include "execution/SelectionCapture.h"
#include "execution/UsageRecorder.h"
#include "panels/FloatingPanel.h"
#include "panels/PanelSettings.h"
#include "panels/review/ResultText.h"
#include "providers/ModelStore.h"
#include "providers/ProviderFactory.h"
#include "providers/ProviderStore.h"

namespace quillmark {

/// The review session: asks the provider, shows the answer in its panel beside the original text, and lets the user
/// apply, copy or discard it, or ask another provider. Requests can't be cancelled: the answer to a closed session is
/// stored here unseen, and a request abandoned for a newer one changes nothing any more except its provider's count.
/// Main thread only.
class ReviewPanelVM : public ReviewSession {
 public:
  struct Collaborators {
    MainQueue& queue;
    SelectionCapture& capture;
    ActiveApplicationTracker& tracker;
    CustomPromptStore& promptStore;
    VariablesStore& variablesStore;
    ProviderStore& providerStore;
    ProviderFactory& providerFactory;
    ModelStore& modelStore;
    UsageRecorder& statistics;
    PanelSettings& settings;
    PanelWindow& window;
    Screens& screens;
  };

  /// The size of the panel's content when it opens.
  static constexpr Size startSize{600, 350};

  explicit ReviewPanelVM(const Collaborators& collaborators);

  const ResultText& text() const { return text_; }  ///< the answer so far
  /// The choice in the provider menu, used by reload().
  const Observable<std::optional<Uuid>>& selectedProvider() const { return selectedProvider_; }
  /// The choice in the model menu, an identifier.
  const Observable<std::optional<std::string>>& selectedModel() const { return selectedModel_; }
  const Observable<std::vector<ProviderModel>>& availableModels() const { return availableModels_; }
  const Observable<bool>& isReviewOpen() const { return panel_.isPresented(); }
  /// The user's selection; notifies only of a different text.
  const Observable<std::string>& initialText() const { return initialText_; }
  const Observable<bool>& loading() const { return loading_; }          ///< a request is in progress
  const Observable<bool>& isStreaming() const { return isStreaming_; }  ///< its answer arrives in pieces
  const Observable<bool>& hasError() const { return hasError_; }  ///< there is an error to show and nothing to apply
  const Observable<std::string>& errorMessage() const { return errorMessage_; }

  /// The command as last run; reload() applies the menus' choice to it.
  const std::optional<Command>& currentCommand() const { return currentCommand_; }
  FloatingPanel& panel() { return panel_; }

  void setCommand(const std::optional<Command>& command) override;
  void open(const std::string& text, const std::string& initialText) override;
  void execute(const Command& command, const std::string& text) override;

  /// Runs the command again on the same text, with the provider and the model of the menus.
  void reload();
  /// Chooses a provider, with its default model; the default provider for an unknown id. Sends no request.
  void changeProvider(const std::optional<Uuid>& id);
  /// Sends no request either.
  void changeModel(std::string identifier) { selectedModel_.set(std::move(identifier)); }
  void updateAvailableModels();
  /// Whether there is a result for this. An incomplete answer can be copied; everything else waits for its end, so that
  /// no partial answer replaces the user's text.
  bool canApply(ActionBehavior behavior) const;
  /// Closes the panel, restores the focus, and applies the text by the command's behaviour, if possible.
  void apply(ActionBehavior behavior);
  void discard();
  /// The only way into the error state. The text is kept.
  void handleError(const std::string& message);

  struct ProviderItem {
    std::string title;
    Uuid id;
    friend bool operator==(const ProviderItem&, const ProviderItem&) = default;
  };
  struct ModelItem {
    std::string title;
    std::optional<std::string> identifier;  ///< absent: can't be chosen
    friend bool operator==(const ModelItem&, const ModelItem&) = default;
  };
  std::string providerLabel() const;
  std::vector<ProviderItem> providerItems() const;
  /// The model's name without its maker.
  std::string modelLabel() const;
  /// Never empty.
  std::vector<ModelItem> modelItems() const;
  /// Labels or items may have changed.
  Signal<> menusChanged;

 private:
  /// One request, shared by its callbacks.
  struct Run {
    unsigned number;
    bool streams;
    std::string providerName;
  };

  void refuse(const Command& command, const RunRefusal& refusal);
  void failLater(std::string message);
  void addChunk(unsigned run, const std::string& chunk);
  void finish(const Run& run, std::optional<std::string> answer);
  void close();

  Collaborators collaborators_;
  FloatingPanel panel_;
  ResultText text_;
  Observable<std::optional<Uuid>> selectedProvider_;
  Observable<std::optional<std::string>> selectedModel_;
  Observable<std::vector<ProviderModel>> availableModels_;
  Observable<std::string> initialText_;
  Observable<bool> loading_;
  Observable<bool> isStreaming_;
  Observable<bool> hasError_;
  Observable<std::string> errorMessage_;
  std::optional<Command> currentCommand_;
  unsigned run_ = 0;  // the current one
  Connections connections_;
  Lifetime lifetime_;
};

}  // namespace quillmark
