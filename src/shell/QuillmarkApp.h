#pragma once

#include <functional>
#include <memory>
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
#include "shell/ShortcutDirectory.h"
#include "shell/UpdateMenuButton.h"
#include "shell/VersionInquiry.h"

namespace quillmark {

/// The composition root: creates every long-lived service, in the order of their dependencies, then loads the stores.
/// The services live until the process ends.
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

  AlertHandler& alertHandler() { return alertHandler_; }
  CustomPromptStore& promptStore() { return promptStore_; }
  ReviewPanelVM& reviewPanel() { return reviewPanel_; }
  ReviewViewState& reviewViewState() { return reviewViewState_; }
  CommandPanelViewModel& commandPanel() { return commandPanel_; }
  ServiceProvider& serviceProvider() { return serviceProvider_; }
  MenuBar& menuBar() { return menuBar_; }

  /// The other services, in one record, for settings windows and for tests.
  struct Services {
    ActionService& actionService;
    ActiveApplicationTracker& activeApplicationTracker;
    PanelSettings& panelSettings;
    LanguageStore& languageStore;
    ToneStore& toneStore;
    VariablesStore& variablesStore;
    ProviderStore& providerStore;
    ModelStore& modelStore;
    TemplateStore& templateStore;  ///< created when this record is first requested, or a second after the start
    CommandImportService& commandImportService;
    AppStatistics& statistics;
    LanguageManager& languageManager;
    LaunchAtLogin& launchAtLogin;
    AppUpdateService& appUpdateService;
    AppUpdaterDelegate& updaterDelegate;
    ServiceUpdater& updater;
    CheckForUpdatesViewModel& checkForUpdatesViewModel;
    ShortcutRecorder::Collaborators shortcutRecording;  ///< what a field needs to record a shortcut
  };
  Services services();

  /// The action of a hot key, requested by another program: runs a command on the selection in front.
  void triggerCommand(const std::string& slug);
  void triggerCommandMenu();
  /// Opened by the tray menu's entry and the task bar entry.
  void openSettings();

 private:
  /// Runs before any store is created, so that the stores find a prepared database.
  static const Platform& prepare(const Platform& platform);
  TemplateStore& templateStore();

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
  ActionService actionService_;
  CommandPanelViewModel commandPanel_;
  ServiceProvider serviceProvider_;
  LanguageManager languageManager_;
  CommandImportService commandImportService_;
  std::unique_ptr<TemplateStore> templateStore_;
  LaunchAtLogin launchAtLogin_;
  VersionInquiry versionInquiry_;
  AppUpdateService appUpdateService_;
  AppUpdaterDelegate updaterDelegate_;
  ServiceUpdater updater_;
  CheckForUpdatesViewModel checkForUpdatesViewModel_;
  UpdateMenuButton updateMenuButton_;
  MenuBar menuBar_;
  ShortcutDirectory shortcutDirectory_;
  GlobalShortcuts shortcuts_;
  KeyboardSubscriptions shortcutSubscriptions_;
  Lifetime lifetime_;
};

}  // namespace quillmark
