#pragma once

#include <QWidget>
#include <functional>

namespace quillmark {

/// The program's entry in the task bar. Task bars show windows, so it is one: a single frameless point that stays
/// minimised. It takes the keyboard neither when it appears nor when another window closes; only the user restores it,
/// which is the entry's action and minimises it again. Closing it in the task bar hides it until it is shown again.
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
