#pragma once

#include <QLineEdit>

namespace quillmark {

/// A line of text without a frame. Selecting text in it does not take the primary selection, which would make the
/// editor behind drop its own.
class TextField : public QLineEdit {
 public:
  explicit TextField(QWidget* parent = nullptr);

 protected:
  void mouseReleaseEvent(QMouseEvent* event) override;
};

}  // namespace quillmark
