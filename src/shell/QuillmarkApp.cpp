#include "shell/QuillmarkApp.h"

#include <chrono>

#include "base/Localization.h"
#include "shell/OnboardingMigration.h"

namespace quillmark {

QuillmarkApp::QuillmarkApp(const Platform& platform, const PanelWindows& windows, Options options)
    : showDockIcon(platform.defaults, keys::showDockIcon),
      alertHandler_(platform.mainQueue, platform.alerts),
      refusedEdits_(platform.defaults, alertHandler_),
      platform_(prepare(platform)),
      appConfig_(platform_.defaults, options.localServicePort),
      transport_(platform_.http, platform_.mainQueue, platform_.bundle, platform_.operatingSystem, platform_.locale),
      apiClient_(transport_, appConfig_, platform_.bundle),
      providerFactory_(
          {transport_, platform_.http, platform_.mainQueue, alertHandler_, platform_.defaults, appConfig_}),
      capture_(platform_.mainQueue, platform_.pasteboard, platform_.keyInjector),
      loadingPanel_(windows.loading == nullptr
                        ? nullptr
                        : std::make_unique<FloatingLoading>(platform_.mainQueue, platform_.screens, *windows.loading)),
      panelSettings_(platform_.defaults),
      languageStore_(platform_.defaults, platform_.locale),
      toneStore_(platform_.defaults),
      promptStore_(platform_.defaults, CustomPromptStore::Expansions{languageStore_, toneStore_, platform_.mainQueue}),
      variablesStore_(platform_.defaults, platform_.locale),
      providerStore_(platform_.defaults),
      modelStore_(platform_.defaults),
      statistics_(platform_.defaults, platform_.mainQueue, apiClient_, platform_.operatingSystem),
      activeApplicationTracker_(platform_.workspace, platform_.mainQueue, platform_.bundle.identifier),
      reviewPanel_({platform_.mainQueue, capture_, activeApplicationTracker_, promptStore_, variablesStore_,
                    providerStore_, providerFactory_, modelStore_, statistics_, panelSettings_, windows.review,
                    platform_.screens}),
      reviewViewState_(platform_.mainQueue, platform_.backgroundQueue, reviewPanel_, panelSettings_),
      actionService_({platform_.mainQueue, platform_.defaults, platform_.permissions, alertHandler_, capture_,
                      activeApplicationTracker_, promptStore_,
                      RunSources{variablesStore_, providerStore_, providerFactory_}, statistics_, reviewPanel_,
                      loadingPanel_.get()}),
      commandPanel_({platform_.mainQueue, windows.commandMenu, platform_.screens, panelSettings_,
                     activeApplicationTracker_, promptStore_, actionService_}),
      serviceProvider_(commandPanel_, alertHandler_, platform_.mainQueue),
      languageManager_(platform_.defaults, platform_.locale, platform_.bundle),
      commandImportService_({platform_.mainQueue, transport_, appConfig_, alertHandler_, platform_.locale,
                             languageManager_.currentLocale, promptStore_, providerStore_, providerFactory_}),
      launchAtLogin_(platform_.loginItem),
      versionInquiry_(apiClient_, appConfig_, alertHandler_, platform_.workspace, platform_.defaults),
      appUpdateService_(versionInquiry_, alertHandler_, platform_.defaults),
      updaterDelegate_(platform_.mainQueue),
      updater_(platform_.mainQueue, platform_.defaults, alertHandler_, versionInquiry_, updaterDelegate_),
      checkForUpdatesViewModel_(platform_.mainQueue, updater_, updaterDelegate_),
      updateMenuButton_(checkForUpdatesViewModel_, updaterDelegate_, updater_),
      menuBar_(actionService_, promptStore_, {languageStore_, toneStore_}, updateMenuButton_,
               {[this] { openSettings(); }, [this] { platform_.workspace.openUrl(QUILLMARK_HELP_URL); },
                std::move(options.quit)}),
      shortcutDirectory_(platform_.hotKeys, alertHandler_, promptStore_, menuBar_),
      shortcuts_(platform_.defaults, platform_.hotKeys),
      shortcutSubscriptions_(shortcuts_, promptStore_, {languageStore_, toneStore_}, actionService_, commandPanel_,
                             activeApplicationTracker_) {
  // The subscriptions above have registered the fixed shortcuts; loading the commands registers theirs.
  promptStore_.load();
  providerStore_.load();
  modelStore_.initializeDefaultModels();
  // Its constructor sends a request, which should not compete with the start.
  platform_.mainQueue.after(std::chrono::seconds(1), lifetime_.guard([this] { templateStore(); }));
}

TemplateStore& QuillmarkApp::templateStore() {
  if (!templateStore_) {
    templateStore_ = std::make_unique<TemplateStore>(platform_.defaults, transport_, appConfig_, platform_.mainQueue);
  }
  return *templateStore_;
}

const Platform& QuillmarkApp::prepare(const Platform& platform) {
  RunningVersion(platform.defaults).store(platform.bundle);
  runOnboardingMigration(platform.defaults, platform.permissions, platform.bundle);
  return platform;
}

QuillmarkApp::Services QuillmarkApp::services() {
  return {actionService_,
          activeApplicationTracker_,
          panelSettings_,
          languageStore_,
          toneStore_,
          variablesStore_,
          providerStore_,
          modelStore_,
          templateStore(),
          commandImportService_,
          statistics_,
          languageManager_,
          launchAtLogin_,
          appUpdateService_,
          updaterDelegate_,
          updater_,
          checkForUpdatesViewModel_,
          {shortcuts_, platform_.hotKeys, alertHandler_,
           [this](const KeyCombination& combination) { return shortcutDirectory_.menuItemUsing(combination); },
           [this](const std::string& name) { return shortcutDirectory_.titleOf(name); }}};
}

void QuillmarkApp::openSettings() {
  alertHandler_.show(AlertKind::notice(
      tr("Settings"),
      tr("The settings window is not part of this version yet. The command 'quillmark defaults' reads and changes "
         "settings.")));
}

void QuillmarkApp::triggerCommand(const std::string& slug) {
  activeApplicationTracker_.markCommandTriggered(true);
  actionService_.runCommandBySlug(slug, true);
}

void QuillmarkApp::triggerCommandMenu() {
  activeApplicationTracker_.markCommandTriggered(true);
  commandPanel_.togglePanel(InvocationSource::keyboardShortcut);
}

}  // namespace quillmark
