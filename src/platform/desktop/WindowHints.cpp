#include "platform/desktop/WindowHints.h"

namespace quillmark {

void WindowHints::bringToFront(QWidget& window) {
  window.raise();
  window.activateWindow();
}

}  // namespace quillmark
