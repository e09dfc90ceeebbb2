#pragma once

#include <QLineEdit>

namespace quillmark {

/// A line of text without a frame. What the pointer selects in it does not become the primary selection: the editor
/// behind would forget its own.
class TextField : public QLineEdit {
 public:
  explicit TextField(QWidget* parent = nullptr);

 protected:
  void mouseReleaseEvent(QMouseEvent* event) override;
};

}  // namespace quillmark
