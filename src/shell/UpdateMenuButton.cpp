#include "shell/UpdateMenuButton.h"

#include "base/Localization.h"

namespace quillmark {

UpdateMenuButton::UpdateMenuButton(CheckForUpdatesViewModel& checkForUpdatesViewModel,
                                   AppUpdaterDelegate& updaterDelegate, Updater& updater)
    : checkForUpdatesViewModel_(checkForUpdatesViewModel), updaterDelegate_(updaterDelegate), updater_(updater) {
  const auto tell = [this](const auto&) { changed.emit(); };
  connections_ += checkForUpdatesViewModel_.canCheckForUpdates().observe(tell);
  connections_ += checkForUpdatesViewModel_.shouldShowGentleReminder().observe(tell);
  connections_ += updaterDelegate_.updateAvailable().observe(tell);
  connections_ += updaterDelegate_.availableUpdate().observe(tell);
}

MenuItem UpdateMenuButton::item() const {
  MenuItem item = MenuItem::action(
      tr("Check for Updates…"), "arrow.counterclockwise.circle", [this] { updater_.checkForUpdates(); },
      checkForUpdatesViewModel_.canCheckForUpdates().get());
  if (!updaterDelegate_.updateAvailable().get()) {
    item.help = tr("Check for new app updates");
    return item;
  }
  if (const auto& update = updaterDelegate_.availableUpdate().get()) {
    item.title = tr("Update to version {}", update->displayVersionString);
  }
  item.symbol = checkForUpdatesViewModel_.shouldShowGentleReminder().get()
                    ? "exclamationmark.arrow.counterclockwise.circle"
                    : "arrow.down.circle.fill";
  item.isAccented = true;
  item.help = tr("A new version is available. Click here to download and install.");
  return item;
}

}  // namespace quillmark
