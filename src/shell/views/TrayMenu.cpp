#include "shell/views/TrayMenu.h"

#include <QCursor>

#include "widgets/Symbols.h"

namespace quillmark {

QIcon programIcon() {
  // Panels show it as it is, on an unknown background: this blue has a contrast of more than 4:1 to both white and
  // black.
  constexpr QRgb colour = 0xFF387AE5;
  return symbols::icon("pencil.line", QColor(colour));
}

TrayMenu::TrayMenu(TrayHost& host, std::function<std::vector<MenuItem>()> build)
    : host_(host), build_(std::move(build)) {
  refill_.setSingleShot(true);
  QObject::connect(&refill_, &QTimer::timeout, &refill_, [this] { fill(); });
  hostChanged_ = host.available.bind([this](bool available) {
    // Once created, the icon finds a returning host on its own.
    if (available && !icon_) {
      appear();
    }
  });
}

TrayMenu::~TrayMenu() = default;

void TrayMenu::appear() {
  painter_ = host_.drawsMenus() ? MenuPainter::host : MenuPainter::toolkit;
  fill();
  icon_ = std::make_unique<QSystemTrayIcon>(programIcon());
  icon_->setToolTip(QStringLiteral("Quillmark"));
  icon_->setContextMenu(&menu_);
  QObject::connect(icon_.get(), &QSystemTrayIcon::activated, &menu_, [this](QSystemTrayIcon::ActivationReason reason) {
    if (reason == QSystemTrayIcon::Trigger) {
      popUp();
    }
  });
  icon_->show();
}

void TrayMenu::refresh() {
  if (icon_) {
    refill_.start(0);
  }
}

void TrayMenu::fill() {
  const std::vector<MenuItem> items = build_();
  fillMenu(menu_, items, painter_);
  if (popup_.isVisible()) {
    fillMenu(popup_, items);
  }
}

void TrayMenu::popUp() {
  if (painter_ == MenuPainter::host) {
    fillMenu(popup_, build_());
    popup_.popup(QCursor::pos());
  } else {
    menu_.popup(QCursor::pos());
  }
}

}  // namespace quillmark
