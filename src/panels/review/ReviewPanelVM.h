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

/// The review session: asks the provider, shows the answer in its panel beside the text that it was made from, and lets
/// the user apply, copy or discard it, or ask another provider. Nothing stops a request: the answer of a session that
/// is over is written here unseen, and a request that the user has left for the next one no longer changes anything,
/// besides the count of its provider. Main thread only.
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

  /// What the panel measures inside when it opens.
  static constexpr Size startSize{600, 350};

  explicit ReviewPanelVM(const Collaborators& collaborators);

  const ResultText& text() const { return text_; }  ///< what of the answer is there
  /// What the provider menu shows; reload() takes it.
  const Observable<std::optional<Uuid>>& selectedProvider() const { return selectedProvider_; }
  /// The same for the model menu; an identifier.
  const Observable<std::optional<std::string>>& selectedModel() const { return selectedModel_; }
  const Observable<std::vector<ProviderModel>>& availableModels() const { return availableModels_; }
  const Observable<bool>& isReviewOpen() const { return panel_.isPresented(); }
  /// What the user had selected; set only to another text.
  const Observable<std::string>& initialText() const { return initialText_; }
  const Observable<bool>& loading() const { return loading_; }          ///< a request is under way
  const Observable<bool>& isStreaming() const { return isStreaming_; }  ///< its answer comes in pieces
  const Observable<bool>& hasError() const { return hasError_; }  ///< there is an error to show and nothing to apply
  const Observable<std::string>& errorMessage() const { return errorMessage_; }

  /// As last run; reload() puts the menus' choice into it.
  const std::optional<Command>& currentCommand() const { return currentCommand_; }
  FloatingPanel& panel() { return panel_; }

  void setCommand(const std::optional<Command>& command) override;
  void open(const std::string& text, const std::string& initialText) override;
  void execute(const Command& command, const std::string& text) override;

  /// Runs the command again on the same text, with the provider and the model of the menus.
  void reload();
  /// Chooses a provider, with its default model; the default provider when there is none of this id. Asks nothing.
  void changeProvider(const std::optional<Uuid>& id);
  /// Asks nothing either.
  void changeModel(std::string identifier) { selectedModel_.set(std::move(identifier)); }
  void updateAvailableModels();
  /// Whether there is a result to do this with. What has come of an answer can be copied while the rest is under way;
  /// everything else waits for its end, for half of it would land in the user's text.
  bool canApply(ActionBehavior behavior) const;
  /// Closes the panel, gives the focus back, and does with the text what the behaviour says, if it can.
  void apply(ActionBehavior behavior);
  void discard();
  /// The one way into the error state. The text stays.
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
  /// Without what only says whose model it is.
  std::string modelLabel() const;
  /// Never empty.
  std::vector<ModelItem> modelItems() const;
  /// Labels or items may be others.
  Signal<> menusChanged;

 private:
  /// One request, for its callbacks.
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
  unsigned run_ = 0;  // the present one
  Connections connections_;
  Lifetime lifetime_;
};

}  // namespace quillmark
