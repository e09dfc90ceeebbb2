#pragma once

#include <QWidget>
#include <functional>

namespace quillmark {

/// The program's entry in the task bar. Task bars show windows, so it is one: a point without a frame that stays
/// minimised. It takes no keyboard when it appears and none when another window closes; only the user restores it,
/// which minimises it again and is what the entry is for. Closing it there hides it until it is shown again.
class TaskBarEntry : public QWidget {
 public:
  explicit TaskBarEntry(std::function<void()> chosen);

  void setShown(bool shown);

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void restored();

  std::function<void()> chosen_;
};

}  // namespace quillmark
