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

/// The picture that stands for the program in the tray and in task bars.
QIcon programIcon();

/// The status item: an icon with a menu, there as soon as something on the desktop shows tray icons. Choosing an entry
/// leaves the active application what it is.
class TrayMenu {
 public:
  /// `build` tells the entries whenever they are needed; refresh() says that they have changed.
  TrayMenu(TrayHost& host, std::function<std::vector<MenuItem>()> build);
  TrayMenu(const TrayMenu&) = delete;
  TrayMenu& operator=(const TrayMenu&) = delete;
  ~TrayMenu();

  /// Several calls in a row cost one rebuild, from the event loop; an open menu follows. Costs nothing without a tray.
  void refresh();

 private:
  void appear();
  void fill();
  void popUp();

  TrayHost& host_;
  std::function<std::vector<MenuItem>()> build_;
  MenuPainter painter_ = MenuPainter::toolkit;
  QMenu menu_;   // the icon's own
  QMenu popup_;  // ours to show, where the host draws the other one
  std::unique_ptr<QSystemTrayIcon> icon_;
  QTimer refill_;
  Connection hostChanged_;
};

}  // namespace quillmark
