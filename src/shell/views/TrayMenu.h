#pragma once

#include <QIcon>
#include <QMenu>
#include <QSystemTrayIcon>
#include <QTimer>
#include <functional>
#include <memory>
#include <vector>

#include "base/Signal.h"
#include "platform/desktop/TrayHost.h"
#include "shell/MenuModel.h"
#include "shell/views/MenuFiller.h"

namespace quillmark {

/// The program's icon in the tray and in task bars.
QIcon programIcon();

/// The status item: an icon with a menu, shown as soon as the desktop has a place for tray icons. Choosing an entry
/// does not change the active application.
class TrayMenu {
 public:
  /// `build` returns the entries whenever they are needed; call refresh() when they have changed.
  TrayMenu(TrayHost& host, std::function<std::vector<MenuItem>()> build);
  TrayMenu(const TrayMenu&) = delete;
  TrayMenu& operator=(const TrayMenu&) = delete;
  ~TrayMenu();

  /// Calls in a row are coalesced into one rebuild from the event loop; an open menu is updated. Costs nothing without
  /// a tray.
  void refresh();

 private:
  void appear();
  void fill();
  void popUp();

  TrayHost& host_;
  std::function<std::vector<MenuItem>()> build_;
  MenuPainter painter_ = MenuPainter::toolkit;
  QMenu menu_;   // the icon's own
  QMenu popup_;  // shown by us where the host draws the other one
  std::unique_ptr<QSystemTrayIcon> icon_;
  QTimer refill_;
  Connection hostChanged_;
};

}  // namespace quillmark
