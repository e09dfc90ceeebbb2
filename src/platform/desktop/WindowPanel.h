#pragma once

#include <QWidget>
#include <functional>

#include "platform/desktop/WindowHints.h"

namespace quillmark {

/// An ordinary window of this program whose title bar has only a close button, such as the first-run window. Unlike a
/// floating panel it counts as an activation of the program. It can be dragged by its background and is kept when
/// closed.
class WindowPanel : public QWidget {
 public:
  /// The content becomes a child of the window and gives it its size.
  WindowPanel(WindowHints& hints, const QString& title, QWidget& content);

  void makeKeyAndOrderFront();
  std::function<void()> closed;  ///< by the user

 protected:
  void closeEvent(QCloseEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;

 private:
  WindowHints& hints_;
};

}  // namespace quillmark
