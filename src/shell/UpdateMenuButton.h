#pragma once

#include "shell/AppUpdaterDelegate.h"
#include "shell/CheckForUpdatesViewModel.h"
#include "shell/MenuModel.h"

namespace quillmark {

/// The menu's entry that looks for updates and offers one that is known. Main thread only.
class UpdateMenuButton {
 public:
  UpdateMenuButton(CheckForUpdatesViewModel& checkForUpdatesViewModel, AppUpdaterDelegate& updaterDelegate,
                   Updater& updater);

  /// The entry as it should be now.
  MenuItem item() const;

  Signal<> changed;  ///< item() may give another one

 private:
  CheckForUpdatesViewModel& checkForUpdatesViewModel_;
  AppUpdaterDelegate& updaterDelegate_;
  Updater& updater_;
  Connections connections_;
};

}  // namespace quillmark
