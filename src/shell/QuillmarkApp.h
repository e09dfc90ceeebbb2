#pragma once

#include <functional>
#include <memory>
#include <set>
#include <string>

#include "base/Lifetime.h"
#include "commands/CommandImportService.h"
#include "commands/CustomPromptStore.h"
#include "commands/LanguageStore.h"
#include "commands/TemplateStore.h"
#include "commands/ToneStore.h"
#include "commands/VariablesStore.h"
#include "execution/ActionService.h"
#include "execution/ActiveApplicationTracker.h"
#include "execution/GlobalShortcuts.h"
#include "execution/KeyboardSubscriptions.h"
#include "execution/SelectionCapture.h"
#include "execution/ServiceProvider.h"
#include "execution/ShortcutRecorder.h"
#include "panels/FloatingLoading.h"
#include "panels/PanelSettings.h"
#include "panels/PanelWindows.h"
#include "panels/menu/CommandPanelViewModel.h"
#include "panels/review/ReviewPanelVM.h"
#include "panels/review/ReviewViewState.h"
#include "platform/Platform.h"
#include "providers/APIClient.h"
#include "providers/AppConfig.h"
#include "providers/HttpTransport.h"
#include "providers/ModelStore.h"
#include "providers/ProviderFactory.h"
#include "providers/ProviderStore.h"
#include "shell/AppStatistics.h"
#include "shell/AppUpdateService.h"
#include "shell/AppUpdaterDelegate.h"
#include "shell/CheckForUpdatesViewModel.h"
#include "shell/LanguageManager.h"
#include "shell/LaunchAtLogin.h"
#include "shell/MenuBar.h"
#include "shell/RefusedEdits.h"
#include "shell/ServiceUpdater.h"
#include "shell/UpdateMenuButton.h"
#include "shell/VersionInquiry.h"

namespace quillmark {

/// The composition root: makes every long-lived service, in the order in which they need each other, then loads the
/// stores. What it makes lives until the process ends.
class QuillmarkApp {
 public:
  struct Options {
    int localServicePort = AppConfig::defaultLocalPort;
    std::function<void()> quit;
  };

  QuillmarkApp(const Platform& platform, const PanelWindows& windows, Options options);
  QuillmarkApp(const QuillmarkApp&) = delete;
  QuillmarkApp& operator=(const QuillmarkApp&) = delete;

  Setting<bool> showDockIcon;  ///< whether the program has a task bar entry, which opens the settings

  ActionService& actionService() { return actionService_; }
  PanelSettings& panelSettings() { return panelSettings_; }
  ReviewPanelVM& reviewPanel() { return reviewPanel_; }
  ReviewViewState& reviewViewState() { return reviewViewState_; }
  CommandPanelViewModel& commandPanel() { return commandPanel_; }
  LanguageStore& languageStore() { return languageStore_; }
  ToneStore& toneStore() { return toneStore_; }
  CustomPromptStore& promptStore() { return promptStore_; }
  ProviderStore& providerStore() { return providerStore_; }
  ModelStore& modelStore() { return modelStore_; }
  /// Made when it is first asked for, or a second after the start.
  TemplateStore& templateStore();
  CommandImportService& commandImportService() { return commandImportService_; }
  VariablesStore& variablesStore() { return variablesStore_; }
  ActiveApplicationTracker& activeApplicationTracker() { return activeApplicationTracker_; }
  AppStatistics& statistics() { return statistics_; }
  AlertHandler& alertHandler() { return alertHandler_; }
  LanguageManager& languageManager() { return languageManager_; }
  ServiceProvider& serviceProvider() { return serviceProvider_; }
  LaunchAtLogin& launchAtLogin() { return launchAtLogin_; }
  AppUpdateService& appUpdateService() { return appUpdateService_; }
  AppUpdaterDelegate& updaterDelegate() { return updaterDelegate_; }
  ServiceUpdater& updater() { return updater_; }
  CheckForUpdatesViewModel& checkForUpdatesViewModel() { return checkForUpdatesViewModel_; }
  MenuBar& menuBar() { return menuBar_; }

  /// What a field needs to record a shortcut.
  ShortcutRecorder::Collaborators shortcutRecording();

  /// What a hot key would do, asked for by another program: runs a command on the selection in front.
  void triggerCommand(const std::string& slug);
  void triggerCommandMenu();
  /// What the tray menu's entry and the task bar entry lead to.
  void openSettings();

 private:
  /// Runs before any store is made: what they find in the database must already be in place.
  static const Platform& prepare(const Platform& platform);
  std::string titleOfShortcut(const std::string& name) const;
  std::optional<std::string> menuItemUsing(const KeyCombination& combination) const;
  /// Tells the user once for each shortcut that it can't be used.
  void shortcutRefused(const std::string& name);

  AlertHandler alertHandler_;
  RefusedEdits refusedEdits_;
  Platform platform_;
  AppConfig appConfig_;
  HttpTransport transport_;
  APIClient apiClient_;
  ProviderFactory providerFactory_;
  SelectionCapture capture_;
  std::unique_ptr<FloatingLoading> loadingPanel_;
  PanelSettings panelSettings_;
  LanguageStore languageStore_;
  ToneStore toneStore_;
  CustomPromptStore promptStore_;
  VariablesStore variablesStore_;
  ProviderStore providerStore_;
  ModelStore modelStore_;
  AppStatistics statistics_;
  ActiveApplicationTracker activeApplicationTracker_;
  ReviewPanelVM reviewPanel_;
  ReviewViewState reviewViewState_;
  CommandPanelViewModel commandPanel_;
  ActionService actionService_;
  ServiceProvider serviceProvider_;
  LanguageManager languageManager_;
  CommandImportService commandImportService_;
  std::unique_ptr<TemplateStore> templateStore_;
  LaunchAtLogin launchAtLogin_;
  std::set<std::string> refusedShortcuts_;
  Connection refusals_;
  GlobalShortcuts shortcuts_;
  KeyboardSubscriptions shortcutSubscriptions_;
  VersionInquiry versionInquiry_;
  AppUpdateService appUpdateService_;
  AppUpdaterDelegate updaterDelegate_;
  ServiceUpdater updater_;
  CheckForUpdatesViewModel checkForUpdatesViewModel_;
  UpdateMenuButton updateMenuButton_;
  MenuBar menuBar_;
  Lifetime lifetime_;
};

}  // namespace quillmark
