#include "widgets/TextField.h"

#include <QMouseEvent>

namespace quillmark {

TextField::TextField(QWidget* parent) : QLineEdit(parent) {
  setFrame(false);
  setAutoFillBackground(false);
  setStyleSheet(QStringLiteral("background: transparent"));
}

void TextField::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) {
    QLineEdit::mouseReleaseEvent(event);
  }
}

}  // namespace quillmark
