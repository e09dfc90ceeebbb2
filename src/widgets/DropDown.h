#pragma once

#include <QListWidget>
#include <functional>
#include <vector>

#include "widgets/Button.h"

namespace quillmark {

/// A button that opens a list of choices. The list is shown inside the button's window: some window systems would not
/// allow it a window of its own over a floating panel. It opens upwards where there is more room.
class DropDown : public Button {
 public:
  struct Item {
    QString title;
    bool chosen = false;
    std::function<void()> choose;  ///< null for a line that can't be chosen
  };

  /// `help` says what is chosen here; `items` is called at each opening.
  DropDown(const QString& help, std::function<std::vector<Item>()> items, QWidget* parent = nullptr);

  QAccessibleInterface* makeAccessible() override;
  void setLabel(const QString& label);
  void open();
  bool isOpen() const { return list_ != nullptr; }
  /// Closes an open list without a choice.
  void dismiss();

 protected:
  bool eventFilter(QObject* object, QEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void chooseRow(int row);

  QString help_;
  std::function<std::vector<Item>()> items_;
  std::vector<Item> shown_;
  QListWidget* list_ = nullptr;
};

}  // namespace quillmark
