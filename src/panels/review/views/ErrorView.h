#pragma once

#include <QWidget>
#include <string>

#include "widgets/TextColumn.h"

namespace quillmark {

/// Shown in place of a missing result: an icon, a title, and the reason as selectable text.
class ErrorView : public QWidget {
 public:
  explicit ErrorView(QWidget* parent = nullptr);

  void setMessage(const std::string& message);
  TextColumn& message() { return message_; }

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void fill();
  void place();

  std::string text_;
  TextColumn message_{this};
  int top_ = 0;  ///< of the icon
};

}  // namespace quillmark
