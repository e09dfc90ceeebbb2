#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/Lifetime.h"
#include "base/Signal.h"
#include "commands/CustomPromptStore.h"
#include "execution/ActionService.h"
#include "execution/ActiveApplicationTracker.h"
#include "execution/CommandPanel.h"
#include "panels/FloatingPanel.h"
#include "panels/PanelSettings.h"
#include "panels/menu/CommandMenuState.h"
#include "platform/MainQueue.h"
#include "platform/PanelWindow.h"
#include "platform/Screens.h"

namespace quillmark {

/// The command menu: its panel, its mode, and the run of what the user chooses. However the panel closes, the menu is
/// reset to its initial state and the trigger is forgotten. Main thread only.
class CommandPanelViewModel : public CommandPanel {
 public:
  /// Delay from the choice to the run, so that its key or click has ended.
  static constexpr Duration triggerDelay = std::chrono::milliseconds(100);

  struct Collaborators {
    MainQueue& queue;
    PanelWindow& window;
    const Screens& screens;
    PanelSettings& settings;
    ActiveApplicationTracker& tracker;
    CustomPromptStore& promptStore;
    ActionService& actionService;
  };

  explicit CommandPanelViewModel(const Collaborators& collaborators);

  const Observable<bool>& isCommandOpen() const { return menuPanel_.isPresented(); }
  const Observable<std::string>& searchText() const { return searchText_; }  ///< the field's text, in both modes
  const Observable<CommandMenuMode>& currentMode() const { return currentMode_; }

  void togglePanel(InvocationSource source) override;
  /// Closes an open menu.
  void cancel();
  void setSearchText(std::string text) { searchText_.set(std::move(text)); }
  /// Switches the mode and empties the field.
  void toggleMode();

  /// After the delay, closes the menu, restores the focus and runs the command. The run is dropped if the menu is
  /// closed before that; a second choice during the delay is ignored.
  void triggerCommand(const std::optional<Command>& command);
  /// The same with the text of the field as the task; nothing while the field is empty.
  void executeFreestyle();

  /// The enabled commands of the store's list, the most used first. Points into that list.
  std::vector<const Command*> enabledCommands() const;

  const CustomPromptStore& promptStore() const { return collaborators_.promptStore; }
  CommandMenuState& view() { return view_; }

 private:
  void opennessChanged(bool isOpen);
  void closeThenRun(std::function<void()> run);

  Collaborators collaborators_;
  FloatingPanel menuPanel_;
  Observable<std::string> searchText_;
  Observable<CommandMenuMode> currentMode_{CommandMenuMode::filter};
  std::optional<InvocationSource> source_;
  CommandMenuState view_;
  TimerHandle pendingRun_;
  Connection opennessChanges_;
  Lifetime lifetime_;
};

}  // namespace quillmark
