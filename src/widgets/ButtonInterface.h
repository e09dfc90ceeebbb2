#pragma once

#include <QAccessibleWidget>

#include "widgets/Button.h"

namespace quillmark {

/// What assistive technology is told about a button.
class ButtonInterface : public QAccessibleWidget {
 public:
  ButtonInterface(Button& button, QAccessible::Role role) : QAccessibleWidget(&button, role), button_(button) {}

  QAccessible::State state() const override;
  // A button's children are only decoration.
  int childCount() const override { return 0; }
  QAccessibleInterface* child(int) const override { return nullptr; }
  int indexOfChild(const QAccessibleInterface*) const override { return -1; }

  QStringList actionNames() const override;
  void doAction(const QString& action) override;

 private:
  Button& button_;
};

}  // namespace quillmark
