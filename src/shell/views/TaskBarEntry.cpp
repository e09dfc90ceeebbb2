#include "shell/views/TaskBarEntry.h"

#include <QEvent>
#include <QMetaObject>
#include <utility>

namespace quillmark {

TaskBarEntry::TaskBarEntry(std::function<void()> chosen)
    : QWidget(nullptr, Qt::Window | Qt::FramelessWindowHint), chosen_(std::move(chosen)) {
  setAttribute(Qt::WA_QuitOnClose, false);
  setAttribute(Qt::WA_ShowWithoutActivating);
  setAttribute(Qt::WA_TranslucentBackground);
  setWindowTitle(QStringLiteral("Quillmark"));
  setFixedSize(1, 1);
}

void TaskBarEntry::setShown(bool shown) { shown ? showMinimized() : hide(); }

void TaskBarEntry::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::WindowStateChange && isVisible() && !isMinimized()) {
    // Queued: the toolkit is still handling this change.
    QMetaObject::invokeMethod(
        this, [this] { restored(); }, Qt::QueuedConnection);
  }
}

void TaskBarEntry::restored() {
  if (isVisible() && !isMinimized()) {
    showMinimized();
    chosen_();
  }
}

}  // namespace quillmark
