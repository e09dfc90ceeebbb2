#include "platform/desktop/WindowPanel.h"

#include <QCloseEvent>
#include <QMouseEvent>
#include <QVBoxLayout>
#include <QWindow>

namespace quillmark {

WindowPanel::WindowPanel(WindowHints& hints, const QString& title, QWidget& content)
    : QWidget(nullptr, Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint),
      hints_(hints) {
  setAttribute(Qt::WA_QuitOnClose, false);
  setWindowTitle(title);
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins({});
  layout->addWidget(&content);
  setFocusProxy(&content);
}

void WindowPanel::makeKeyAndOrderFront() {
  show();
  hints_.bringToFront(*this);
}

void WindowPanel::closeEvent(QCloseEvent* event) {
  QWidget::closeEvent(event);
  if (closed) {
    closed();
  }
}

void WindowPanel::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) {
    windowHandle()->startSystemMove();
  }
}

}  // namespace quillmark
