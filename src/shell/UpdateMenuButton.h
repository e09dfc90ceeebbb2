#pragma once

#include "shell/AppUpdaterDelegate.h"
#include "shell/CheckForUpdatesViewModel.h"
#include "shell/MenuModel.h"

namespace quillmark {

/// The menu entry that checks for updates and offers a known one. Main thread only.
class UpdateMenuButton {
 public:
  UpdateMenuButton(CheckForUpdatesViewModel& checkForUpdatesViewModel, AppUpdaterDelegate& updaterDelegate,
                   Updater& updater);

  /// The current entry.
  MenuItem item() const;

  Signal<> changed;  ///< item() may have changed

 private:
  CheckForUpdatesViewModel& checkForUpdatesViewModel_;
  AppUpdaterDelegate& updaterDelegate_;
  Updater& updater_;
  Connections connections_;
};

}  // namespace quillmark
