#include "widgets/ButtonInterface.h"

namespace quillmark {

QAccessible::State ButtonInterface::state() const {
  auto state = QAccessibleWidget::state();
  state.checkable = button_.isCheckable();
  state.checked = button_.isChecked();
  state.pressed = button_.isDown();
  return state;
}

QStringList ButtonInterface::actionNames() const {
  return button_.isEnabled() ? QStringList(pressAction()) + QAccessibleWidget::actionNames() : QStringList();
}

void ButtonInterface::doAction(const QString& action) {
  action == pressAction() ? button_.click() : QAccessibleWidget::doAction(action);
}

}  // namespace quillmark
