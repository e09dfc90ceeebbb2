#pragma once

#include <QListView>
#include <QStackedLayout>
#include <QWidget>

#include "panels/menu/CommandPanelViewModel.h"
#include "widgets/Button.h"
#include "widgets/Placeholder.h"
#include "widgets/TextField.h"

namespace quillmark {

/// The content of the command menu: the field, and below it the commands found, or what is about to be run.
class CommandMenuView : public QWidget {
 public:
  explicit CommandMenuView(CommandPanelViewModel& viewModel, QWidget* parent = nullptr);
  ~CommandMenuView() override;

  QSize sizeHint() const override;
  QLineEdit& field() { return field_; }
  QListView& list() { return list_; }

 protected:
  bool eventFilter(QObject* object, QEvent* event) override;
  bool focusNextPrevChild(bool) override { return false; }  // Tab switches the mode
  void paintEvent(QPaintEvent* event) override;

 private:
  class Rows;
  class Task;

  bool isFilter() const;
  void showMode();
  void showRows();
  void showTask();
  void showSelection();
  void pointerAt(QPoint global, QPoint inList);

  CommandPanelViewModel& viewModel_;
  CommandMenuState& state_;
  std::unique_ptr<Rows> rows_;
  QWidget head_;
  TextField field_{&head_};
  Button modeButton_;
  QWidget content_;
  QStackedLayout pages_;
  QListView list_;
  Placeholder nothing_;
  Placeholder noTask_;
  Task* task_;
  QPoint lastPointer_;
  Connections connections_;
};

}  // namespace quillmark
